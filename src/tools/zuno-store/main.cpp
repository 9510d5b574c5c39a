// zuno-store get URI NAME [--type text|int|bool|double]
// zuno-store set URI NAME VALUE [--type text|int|bool|double]
// zuno-store remove URI NAME
// zuno-store list URI [SUBSTORE]
//
// Reads and changes the values of a value store: an XML or JSON file (a "file:" URI or a
// local path ending in .xml or .json) or, on Windows, a registry key ("registry:" URI).
// NAME may walk sub-stores ("a/b/name"); an empty last part is the key's default value in
// the registry. Exit codes: 0 done, 1 the value (or sub-store) is missing, 2 a usage or
// store error, whose message goes to standard error.
#include "storeToolPlatform.h"
#include "stores/valueText.h"

#include <zuno/CException.h>
#include <zuno/CURI.h>
#include <zuno/IPathes.h>
#include <zuno/IValueStoreManager.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace zuno;

namespace {

const char Usage[] =
    "usage: zuno-store get URI NAME [--type text|int|bool|double]\n"
    "       zuno-store set URI NAME VALUE [--type text|int|bool|double]\n"
    "       zuno-store remove URI NAME\n"
    "       zuno-store list URI [SUBSTORE]\n"
    "Reads and changes values of an XML or JSON store file (a file: URI or a path ending in\n"
    ".xml or .json) or, on Windows, of a registry key (registry:HKEY_CURRENT_USER/Software/...).\n"
    "NAME may walk sub-stores (a/b/name); an empty NAME is a registry key's default value.\n"
    "Exit codes: 0 done, 1 value missing, 2 usage or store error.\n";

enum ExitCode { Done = 0, Missing = 1, Failed = 2 };
enum class Type { Text, Int, Bool, Double };

struct Command {
    String action;
    std::vector<String> operands;
    Type type = Type::Text;
};

void writeLine(std::FILE* out, const String& text) {
    const std::string bytes = text.toStdString();
    std::fwrite(bytes.data(), 1, bytes.size(), out);
    std::fputc('\n', out);
}

int usageError(const String& problem) {
    if (!problem.isEmpty()) writeLine(stderr, L"zuno-store: " + problem);
    std::fputs(Usage, stderr);
    return Failed;
}

bool parseType(const String& text, Type& type) {
    const std::pair<const wchar_t*, Type> types[] = {
        {L"text", Type::Text}, {L"int", Type::Int}, {L"bool", Type::Bool}, {L"double", Type::Double}};
    for (const auto& [name, value] : types) {
        if (text == String(name)) {
            type = value;
            return true;
        }
    }
    return false;
}

// A URI text with a scheme of two letters or more ("file:", "registry:"), or else a local
// path ("C:\dir\store.xml", "settings.json").
P<IURI> storeURI(const String& text) {
    const int32_t colon = text.find(U':');
    if (colon >= 2) {
        bool scheme = true;
        for (int32_t i = 0; i < colon; ++i) {
            const char32_t c = text.charAt(i);
            scheme = scheme && ((c >= U'a' && c <= U'z') || (c >= U'A' && c <= U'Z'));
        }
        if (scheme) return make<CURI>(text);
    }
    return getPathes()->pathToURI(text);
}

// The store that holds the last part of `path`: the sub-stores before it are walked, and
// created when `create` is set. Null when one is missing.
P<IValueStore> holderOf(P<IValueStore> store, const String& path, bool create, String& lastPart) {
    std::vector<String> parts = path.split(L"/");
    if (parts.empty()) parts.push_back(String::empty());
    lastPart = parts.back();
    for (size_t i = 0; i + 1 < parts.size() && store; ++i) {
        if (!parts[i].isEmpty()) store = store->getSubStore(parts[i], create);
    }
    return store;
}

String readValue(IValueStore& store, const String& name, Type type) {
    switch (type) {
    case Type::Int:
        try {
            return valueText::fromInt64(store.getInt64(name, 0));
        } catch (const CException&) {
            return valueText::fromUInt64(store.getUInt64(name, 0));  // above the signed range, or raises
        }
    case Type::Bool: return valueText::fromBoolean(store.getBoolean(name, false));
    case Type::Double: return valueText::fromDouble(store.getDouble(name, 0));
    default: return store.getString(name, String::empty());
    }
}

// False when `value` is not of the type.
bool writeValue(IValueStore& store, const String& name, const String& value, Type type) {
    switch (type) {
    case Type::Int:
        if (const auto number = valueText::toInt64(value)) store.setInt64(name, *number);
        else if (const auto large = valueText::toUInt64(value)) store.setUInt64(name, *large);
        else return false;
        return true;
    case Type::Bool:
        if (value != String(L"true") && value != String(L"false")) return false;
        store.setBoolean(name, value == String(L"true"));
        return true;
    case Type::Double:
        if (const auto number = valueText::toDouble(value)) store.setDouble(name, *number);
        else return false;
        return true;
    default:
        store.setString(name, value);
        return true;
    }
}

P<IValueStore> open(const String& uriText, bool readOnly) {
    const P<IValueStore> store = getValueStoreManager()->openValueStore(storeURI(uriText), readOnly);
    if (!store) throw CException(L"No value store for '" + uriText + L"': use a .xml or .json file or a registry: URI.");
    return store;
}

int get(const Command& command) {
    String name;
    const P<IValueStore> holder = holderOf(open(command.operands[0], true), command.operands[1], false, name);
    if (!holder || !holder->hasValue(name)) return Missing;
    writeLine(stdout, readValue(*holder, name, command.type));
    return Done;
}

int set(const Command& command) {
    const P<IValueStore> store = open(command.operands[0], false);
    String name;
    const P<IValueStore> holder = holderOf(store, command.operands[1], true, name);
    if (!writeValue(*holder, name, command.operands[2], command.type))
        return usageError(L"'" + command.operands[2] + L"' is not a value of the given --type");
    store->store();
    return Done;
}

// Removes the value, or else the sub-store of that name.
int remove(const Command& command) {
    const P<IValueStore> store = open(command.operands[0], false);
    String name;
    const P<IValueStore> holder = holderOf(store, command.operands[1], false, name);
    if (!holder || !(holder->removeValue(name) || holder->removeSubStore(name))) return Missing;
    store->store();
    return Done;
}

int list(const Command& command) {
    P<IValueStore> store = open(command.operands[0], true);
    if (command.operands.size() > 1) {
        for (const String& part : command.operands[1].split(L"/")) {
            if (!part.isEmpty() && store) store = store->getSubStore(part, false);
        }
        if (!store) return Missing;
    }
    for (const String& name : store->getSubStoreNames()) writeLine(stdout, name + L"/");
    for (const String& name : store->getValueNames()) writeLine(stdout, name);
    return Done;
}

// Parses the command line; answers a usage error's text, or an empty text.
String parse(const std::vector<String>& arguments, Command& command) {
    for (size_t i = 0; i < arguments.size(); ++i) {
        const String& argument = arguments[i];
        if (argument == String(L"--type")) {
            if (++i == arguments.size() || !parseType(arguments[i], command.type)) return L"--type takes text, int, bool or double";
        } else if (argument.startsWith(L"--type=")) {
            if (!parseType(argument.substring(7), command.type)) return L"--type takes text, int, bool or double";
        } else if (command.action.isNull()) {
            command.action = argument;
        } else {
            command.operands.push_back(argument);
        }
    }
    const struct {
        const wchar_t* action;
        size_t least, most;
    } shapes[] = {{L"get", 2, 2}, {L"set", 3, 3}, {L"remove", 2, 2}, {L"list", 1, 2}};
    for (const auto& shape : shapes) {
        if (command.action != String(shape.action)) continue;
        if (command.operands.size() < shape.least || command.operands.size() > shape.most)
            return L"wrong number of arguments for " + command.action;
        return String::empty();
    }
    return command.action.isNull() ? String(L"no command given") : L"unknown command '" + command.action + L"'";
}

} // namespace

int main(int argc, char** argv) {
    storetool::prepareProcess();
    const std::vector<String> arguments = storetool::arguments(argc, argv);
    for (const String& argument : arguments) {
        if (argument == String(L"--help") || argument == String(L"-h")) {
            std::fputs(Usage, stdout);
            return Done;
        }
    }
    Command command;
    const String problem = parse(arguments, command);
    if (!problem.isEmpty()) return usageError(problem);
    try {
        int code = Done;
        if (command.action == String(L"get")) code = get(command);
        else if (command.action == String(L"set")) code = set(command);
        else if (command.action == String(L"remove")) code = remove(command);
        else code = list(command);
        return std::fflush(stdout) == 0 ? code : int(Failed);
    } catch (const CException& error) {
        writeLine(stderr, L"zuno-store: " + error.getMessage());
    } catch (const std::exception& error) {
        writeLine(stderr, L"zuno-store: " + String(error.what(), -1));
    }
    return Failed;
}
