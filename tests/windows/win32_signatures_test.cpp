#include "platform/signatures_contract.h"
#include "platform/win32/Win32Signatures.h"

namespace tb {
namespace {

TEST(Win32Signatures, KeepTheContract) {
    Win32Signatures signatures;
    CheckSignatures(signatures);
}

}  // namespace
}  // namespace tb
