#include "wfdb/WfdbCodes.h"

#include <cstring>

namespace {

/// At the place of each code its name; a blank where a code has none.
constexpr char mnemonics[] = " NLRaVFJASEj/Q~ | sT*D\"=pB^t+u?![]en@xf()r";
constexpr char beatMnemonics[] = "NLRBAaJSVrFejnE/fQ?";
constexpr int namedCodes = sizeof(mnemonics) - 1;
static_assert(namedCodes == 42 && namedCodes <= wfdb::codeCount);

} // namespace

QByteArray wfdb::mnemonicOf(int code)
{
    if (code < 0 || code >= namedCodes || mnemonics[code] == ' ')
        return {};
    return {1, mnemonics[code]};
}

int wfdb::codeOf(char mnemonic)
{
    const void* found = mnemonic == ' ' ? nullptr : std::memchr(mnemonics, mnemonic, namedCodes);
    return found == nullptr ? 0 : static_cast<int>(static_cast<const char*>(found) - mnemonics);
}

bool wfdb::isBeat(int code)
{
    const QByteArray name = mnemonicOf(code);
    return !name.isEmpty() && std::strchr(beatMnemonics, name.at(0)) != nullptr;
}
