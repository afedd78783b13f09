// SAPI's data key and object token over plain data in memory.
//
// Where the data came from (the registry, a file) is not this file's concern: it is read once, when the voice is
// found, so a token is a picture of that moment and every call on it that would write answers E_ACCESSDENIED.
#ifndef NELVA_TOOLS_HOST_DATA_KEY_H
#define NELVA_TOOLS_HOST_DATA_KEY_H

#include <map>
#include <memory>
#include <string>
#include <variant>

#include "platform/sapi.h"
#include "tools/host/com_ptr.h"
#include "tools/host/utf.h"

namespace host {

// Orders names as the registry does: without regard to the case of ASCII letters.
struct NameLess {
    bool operator()(const std::string& left, const std::string& right) const {
        return ascii_lower(left) < ascii_lower(right);
    }
};

// One key: its values and its sub-keys, by UTF-8 name. The value named "" is the key's default value.
struct KeyData {
    using Value = std::variant<std::string, DWORD>;
    std::map<std::string, Value, NameLess> values;
    std::map<std::string, std::shared_ptr<const KeyData>, NameLess> keys;

    // Null when there is no such string value, or no such key.
    const std::string* string(const std::string& name) const;
    const KeyData* key(const std::string& name) const;
};

// The data key alone, such as OpenKey hands out. The caller owns the one reference.
ComPtr<ISpDataKey> make_data_key(std::shared_ptr<const KeyData> data);

// A token; `id` is what GetId answers. Of ISpObjectToken's own methods only GetId works, the others answer E_NOTIMPL:
// an engine asks nothing else of a token.
//
// The data key's methods answer SPERR_NOT_FOUND for a name that is missing, SPERR_NO_MORE_ITEMS behind the last item,
// E_POINTER for a null place and E_OUTOFMEMORY. A null name is the default value. Strings come from CoTaskMemAlloc.
ComPtr<ISpObjectToken> make_token(const std::string& id, std::shared_ptr<const KeyData> data);

// Keys and tokens that somebody still holds.
long live_keys();

}  // namespace host

#endif
