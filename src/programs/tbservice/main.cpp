// The web service that clients ask for their list, their data files and their pages, and the commands of its publisher.
#include "service/commands/ServiceCommands.h"

int main(int argc, char** argv) { return tb::RunService({argv + 1, argv + argc}, TRAWLBEAM_VERSION); }
