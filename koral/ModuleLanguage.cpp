#include "koral/ModuleLanguage.h"

#include "grammar/Cache.h"
#include "grammar/TokenScanner.h"

namespace vellum {

std::string leadingKeyword(const std::string& name) {
    TokenScanner scanner;
    Cache text;
    if (!scanner.loadDefinitions(kModuleTokens) || !text.attach(name.c_str()))
        return {};
    scanner.reset(&text);
    const int code = scanner.nextToken();
    if (code < 0 || code == kModuleCommentToken || code == kModuleConditionToken ||
        code >= kModuleFirstValueToken)
        return {};
    return scanner.text();
}

}  // namespace vellum
