#include "tools/ArgParser.h"

#include <utility>

namespace zeg_tools {

ArgParser::ArgParser(std::string tool, std::string command)
    : m_tool(std::move(tool)), m_command(std::move(command)) {
    flag("help").flag("version");
}

ArgParser& ArgParser::value(const std::string& name) {
    m_takesValue[name] = true;
    return *this;
}

ArgParser& ArgParser::flag(const std::string& name) {
    m_takesValue[name] = false;
    return *this;
}

bool ArgParser::parse(const std::vector<std::string>& args) {
    m_given.clear();
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg == "-h") {
            m_given["help"];
            continue;
        }
        if (arg.compare(0, 2, "--") != 0 || arg.size() == 2)
            return fail("unexpected argument '" + arg + "'");
        const size_t eq = arg.find('=');
        const std::string name = arg.substr(2, eq == std::string::npos ? eq : eq - 2);
        const auto known = m_takesValue.find(name);
        if (known == m_takesValue.end() || (!known->second && eq != std::string::npos))
            return fail("unknown option '" + arg + "'");
        if (!known->second) {
            m_given[name];
        } else if (eq != std::string::npos) {
            m_given[name] = arg.substr(eq + 1);
        } else if (i + 1 < args.size()) {
            m_given[name] = args[++i];
        } else {
            return fail("option --" + name + " needs a value");
        }
    }
    return true;
}

bool ArgParser::has(const std::string& name) const { return m_given.count(name) != 0; }

std::string ArgParser::get(const std::string& name, const std::string& def) const {
    const auto it = m_given.find(name);
    return it == m_given.end() ? def : it->second;
}

std::string ArgParser::usageError(const std::string& message) const {
    return m_tool + ": " + message + " (see " + m_command + " --help)";
}

bool ArgParser::require(const std::string& name, std::string& value) {
    value = get(name);
    return !value.empty() || fail("missing --" + name);
}

bool ArgParser::fail(const std::string& message) {
    m_error = usageError(message);
    return false;
}

}  // namespace zeg_tools
