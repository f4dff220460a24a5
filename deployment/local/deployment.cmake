# What this deployment decides and the program holds.

# The name in every message and file name, and that of the program file.
set(TRAWLBEAM_PRODUCT_NAME "Trawlbeam")
# Where "home page" leads when the skin names no address.
set(TRAWLBEAM_HOME_PAGE "http://127.0.0.1:8765/")
# Base address of the numbered servers, 1 to 10 for "{?}", that the very first defaults come from.
set(TRAWLBEAM_SERVER_TEMPLATE "http://127.0.0.{?}:8765/Reference")
# The public key that program updates must be signed with, the line of the file PREFIX.pub that `tbtool keygen` writes.
# Empty: they are taken unsigned.
set(TRAWLBEAM_UPDATE_KEY "")
# Whether the program guards its list and its data files against what a server says; ON where this line is missing. Here
# a service starts anew all the time, and its lists shrink and grow as whoever works with it likes.
set(TRAWLBEAM_LIST_GUARD OFF)
