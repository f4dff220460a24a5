// A helper of the tests of processes: "linger" stays for half a minute; "ask" ends with 41 when another instance of its
// own file runs, otherwise with 40.
#include <windows.h>

#include "platform/win32/Win32Processes.h"

int main(int argc, char** argv) {
    tb::Win32Processes processes;
    if (argc > 1 && tb::Text(argv[1]) == "linger") Sleep(30000);
    processes.Exit(processes.IsPreviousInstance() ? 41 : 40);
}
