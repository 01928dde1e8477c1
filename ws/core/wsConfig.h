#ifndef ZEG_WS_CORE_WSCONFIG_H
#define ZEG_WS_CORE_WSCONFIG_H

#include <map>
#include <string>

#include "ws/core/wsExport.h"

namespace ws {

// The segmenter's configuration file, a flat list of lines:
//   KEY = value          an item (key and value trimmed of " \t\a\n")
//   $NAME = value        a variable, substituted into item values when read
//   #include "path"      loads another file at this point
// A line whose first character is '#', or that starts with "//", and holds a
// '=' is a comment; a line without '=' or with a blank key is skipped. A
// later definition of a key replaces an earlier one, across files.
// Variables are substituted only in values read through the getters (and
// listAll), by plain text and in name order, never in keys or include paths.
// Defaults are returned unsubstituted, and only when the key is absent: a
// present key whose text does not parse reads as 0 / 0.0 / false.
// Thread safety: none; the segmenter reads it once while initialising.
// Copying copies both maps.
class WS_EXPORT Config {
public:
    Config();
    // Loads `path` as init does. ENDS THE PROCESS with status -1 when the
    // file cannot be opened; use Config() and init where that matters.
    explicit Config(const char* path);
    virtual ~Config();

    // Adds the settings of `path` (and its includes) to those already held.
    // False, with "can't open file <path>" on standard error, when `path`
    // cannot be opened; true otherwise, even when reading stopped early at a
    // failed include (whose own message is the only trace of it).
    virtual bool init(const char* path);

    // The item's value with variables substituted; `def` when absent.
    std::string getString(const std::string& key, const std::string& def) const;
    // True exactly when the value is the text "true" (case-sensitive).
    bool getBool(const std::string& key, bool def) const;
    // strtol of the value (base 10; 0 without leading digits).
    long getLong(const std::string& key, long def) const;
    // strtod of the value (0.0 when it does not parse). A default goes
    // through "%f" first, so defaults below 0.000001 read as 0.
    double getDouble(const std::string& key, double def) const;

    // A key beginning with '$' sets that variable, any other key an item.
    // Numbers are stored as "%ld" / "%f" text, booleans as "true"/"false".
    void setString(const std::string& key, const std::string& value);
    void setLong(const std::string& key, long value);
    void setDouble(const std::string& key, double value);
    void setBool(const std::string& key, bool value);

    // Writes "The item number is <n>" and then "key = value" (substituted)
    // for each item in key order to standard output.
    void listAll() const;

protected:
    // What _seperatString makes of a line.
    enum SplitResult { SPLIT_OK = 0, SPLIT_NO_ASSIGNMENT = 1, SPLIT_EMPTY_KEY = 2, SPLIT_COMMENT = 4 };
    // What _procInclude makes of a line.
    enum IncludeResult { NOT_INCLUDE, INCLUDE_HANDLED, INCLUDE_FAILED };

    // Deepest chain of nested includes; beyond it an include fails, so a
    // file that includes itself cannot recurse without end.
    static constexpr int kMaxIncludeDepth = 16;
    // Most includes one init follows; beyond it every include fails, so a
    // file that includes itself several times cannot take exponential time.
    static constexpr int kMaxIncludes = 256;

    // Reads `path` line by line into the maps, stopping at the first line
    // _loadLine refuses. False only when `path` cannot be opened.
    bool _load(const char* path);
    // False only for a failed include.
    bool _loadLine(const std::string& line);
    // Blank lines and loaded includes are INCLUDE_HANDLED.
    IncludeResult _procInclude(const std::string& line);
    // Splits "key = value"; returns a SplitResult (key and value are set
    // only for SPLIT_OK).
    static int _seperatString(const std::string& line, std::string& key, std::string& value);
    std::string _getVariable(const std::string& key, const std::string& def) const;
    void _setVariable(const std::string& key, const std::string& value);
    // Substitutes every variable into `text`, in name order.
    void _replaceSub(std::string& text) const;

private:
    static bool substituteOne(const std::string& name, const std::string& value,
                              std::string& text);

    std::map<std::string, std::string> m_items;
    std::map<std::string, std::string> m_variables;  // names include the '$'
    int m_includeDepth = 0;
    int m_includeCount = 0;
};

}  // namespace ws

#endif
