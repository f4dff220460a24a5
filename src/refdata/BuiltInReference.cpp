#include "refdata/BuiltInReference.h"

namespace tb {

Text BuiltInReference() {
    return "<BEGIN Version='20050215' Updated='1/1/2000'>"
           "<SUBMISSIONS Version='1'>"
           "<STATUS ID='0' NAME='NA'/>"
           "<STATUS ID='1' NAME='Pending'/>"
           "<STATUS ID='2' NAME='Active'/>"
           "<STATUS ID='3' NAME='Inactive'/>"
           "<STATUS ID='4' NAME='Dead'/>"
           "<STATUS ID='5' NAME='Withdrawn'/>"
           "</SUBMISSIONS>"
           "<DISPOSITIONS Version='1'>"
           "<DISPOSITION ID='0' NAME='Not Malicious'/>"
           "<DISPOSITION ID='1' NAME='Undefined'/>"
           "<DISPOSITION ID='2' NAME='Malicious'/>"
           "</DISPOSITIONS>"
           "<CATEGORIES Version='1'>"
           "<CATEGORY ID='1' NAME='General' DESC='General'/>"
           "<CATEGORY ID='2' NAME='Banking or Credit Card Spoof' DESC='Banking or Credit Card Spoof'/>"
           "</CATEGORIES>"
           "</BEGIN>";
}

}  // namespace tb
