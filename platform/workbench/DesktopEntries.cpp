#include "platform/workbench/DesktopEntries.h"

#include "platform/dos/CommandSearch.h"
#include "platform/dos/Files.h"
#include "platform/dos/HostPaths.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

namespace workbench {

namespace {

constexpr std::size_t LargestFile = 4u << 20; // bytes of one file of the database
constexpr std::size_t LongestExec = 65536;
constexpr unsigned MostDrawers = 64; // looked into for one entry
constexpr std::string_view MustBeQuoted = "'><~|&;*?#()`$\\";

using Group = std::map<std::string, std::string, std::less<>>; // key, value as it stands

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0)
            parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::string_view Trim(std::string_view text) {
    const std::size_t start = std::min(text.find_first_not_of(" \t\r"), text.size());
    const std::size_t last = text.find_last_not_of(" \t\r");
    return last == std::string_view::npos ? std::string_view() : text.substr(start, last + 1 - start);
}

// The keys of one group; of a key that stands twice the first counts.
Group ReadGroup(std::string_view text, std::string_view name) {
    Group group;
    bool isInside = false;
    for (const std::string& raw : Split(text, '\n')) {
        const std::string_view line = Trim(raw);
        if (line.starts_with('[')) {
            isInside = line.ends_with(']') && line.substr(1, line.size() - 2) == name;
            continue;
        }
        const std::size_t equal = line.find('=');
        if (isInside && !line.starts_with('#') && equal != std::string_view::npos)
            group.emplace(Trim(line.substr(0, equal)), Trim(line.substr(equal + 1)));
    }
    return group;
}

std::string ValueOf(const Group& group, std::string_view key) {
    const auto found = group.find(key);
    return found != group.end() ? found->second : std::string();
}

// The escapes of every text value: "\s", "\n", "\t", "\r", "\\".
std::string Unescape(std::string_view value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        constexpr std::string_view letters = "sntr\\";
        constexpr std::string_view meanings = " \n\t\r\\";
        const std::size_t which =
            value[i] == '\\' && i + 1 < value.size() ? letters.find(value[i + 1]) : std::string_view::npos;
        text += which == std::string_view::npos ? value[i] : meanings[which];
        i += which == std::string_view::npos ? 0 : 1;
    }
    return text;
}

std::string FromEnvironment(const char* name, const std::string& otherwise) {
    const char* value = std::getenv(name);
    return value && *value ? value : otherwise;
}

// The user's drawer first, then those of the system, by a variable of drawers with ":" between.
std::vector<std::string> Drawers(const char* own, const char* ownDefault, const char* all,
                                 const char* allDefault) {
    std::vector<std::string> drawers = {FromEnvironment(own, FromEnvironment("HOME", "") + ownDefault)};
    for (const std::string& drawer : Split(FromEnvironment(all, allDefault), ':'))
        drawers.push_back(drawer);
    std::erase_if(drawers, [](const std::string& drawer) { return !drawer.starts_with('/'); });
    return drawers;
}

std::vector<std::string> ConfigurationDrawers() {
    return Drawers("XDG_CONFIG_HOME", "/.config", "XDG_CONFIG_DIRS", "/etc/xdg");
}

std::vector<std::string> ApplicationDrawers() {
    std::vector<std::string> drawers =
        Drawers("XDG_DATA_HOME", "/.local/share", "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    for (std::string& drawer : drawers)
        drawer += "/applications";
    return drawers;
}

std::string ReadHostFile(const std::string& hostPath) {
    return dos::ReadWhole(dos::FromHostPath(hostPath), LargestFile).value_or("");
}

struct FoundText {
    std::string File; // of the host
    std::string Text;
};

// Each "-" of an id may stand for a drawer; only into drawers that exist is gone on, and only so often.
std::optional<FoundText> FindText(const std::string& drawer, const std::string& id, unsigned& drawersLeft) {
    if (std::string text = ReadHostFile(drawer + "/" + id); !text.empty())
        return FoundText{drawer + "/" + id, std::move(text)};
    for (std::size_t dash = id.find('-'); dash != std::string::npos; dash = id.find('-', dash + 1)) {
        const std::string inside = drawer + "/" + id.substr(0, dash);
        if (dash == 0 || drawersLeft == 0 || !dos::Lock(dos::FromHostPath(inside)))
            continue;
        --drawersLeft;
        if (auto found = FindText(inside, id.substr(dash + 1), drawersLeft))
            return found;
    }
    return std::nullopt;
}

// The entry of that id; the first drawer that has it decides, also by hiding it.
std::optional<DesktopEntry> FindEntry(const std::string& id) {
    if (id.find('/') != std::string::npos || id.find("..") != std::string::npos || !id.ends_with(".desktop"))
        return std::nullopt;
    unsigned drawersLeft = MostDrawers;
    for (const std::string& drawer : ApplicationDrawers())
        if (const auto found = FindText(drawer, id, drawersLeft))
            return ParseDesktopEntry(found->Text, found->File);
    return std::nullopt;
}

// The files with the user's and the system's choices, the first counting most.
std::vector<std::string> ChoiceFiles() {
    std::vector<std::string> files;
    const std::vector<std::string> desktops = Split(FromEnvironment("XDG_CURRENT_DESKTOP", ""), ':');
    std::vector<std::string> drawers = ConfigurationDrawers();
    const std::vector<std::string> more = ApplicationDrawers();
    drawers.insert(drawers.end(), more.begin(), more.end());
    for (const std::string& drawer : drawers) {
        for (std::string desktop : desktops) {
            std::transform(desktop.begin(), desktop.end(), desktop.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
            files.push_back(drawer + "/" + desktop + "-mimeapps.list");
        }
        files.push_back(drawer + "/mimeapps.list");
    }
    return files;
}

// All ids for one type in the order of preference.
class Candidates {
public:
    Candidates() {
        for (const std::string& file : ChoiceFiles()) {
            const std::string text = ReadHostFile(file);
            Choices.push_back({ReadGroup(text, "Default Applications"), ReadGroup(text, "Added Associations"),
                               ReadGroup(text, "Removed Associations")});
        }
        for (const std::string& drawer : ApplicationDrawers())
            Caches.push_back(ReadGroup(ReadHostFile(drawer + "/mimeinfo.cache"), "MIME Cache"));
    }

    [[nodiscard]] std::vector<std::string> Of(const std::string& mime) const {
        std::vector<std::string> ids;
        for (const Choice& choice : Choices)
            Add(ids, ValueOf(choice.Default, mime), {});
        std::set<std::string> removed;
        for (const Choice& choice : Choices) {
            Add(ids, ValueOf(choice.Added, mime), removed);
            for (std::string& id : Split(ValueOf(choice.Removed, mime), ';'))
                removed.insert(std::move(id));
        }
        for (const Group& cache : Caches)
            Add(ids, ValueOf(cache, mime), removed);
        return ids;
    }

private:
    struct Choice {
        Group Default, Added, Removed;
    };
    static void Add(std::vector<std::string>& ids, std::string_view list,
                    const std::set<std::string>& removed) {
        for (std::string& id : Split(list, ';'))
            if (!removed.contains(id))
                ids.push_back(std::move(id));
    }
    std::vector<Choice> Choices;
    std::vector<Group> Caches;
};

// "%%" in a word, and the codes that stand for a text of the entry; those that nobody uses any more go.
std::string Expand(const std::string& word, const DesktopEntry& entry, const std::string& path) {
    std::string text;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (word[i] != '%' || i + 1 == word.size()) {
            text += word[i];
            continue;
        }
        const char code = word[++i];
        if (code == '%')
            text += '%';
        else if (code == 'c')
            text += entry.Name;
        else if (code == 'k')
            text += entry.File;
        else if (code == 'f' || code == 'F' || code == 'u' || code == 'U')
            text += path;
    }
    return text;
}

bool IsFieldCode(const std::string& word) {
    return word.size() == 2 && word[0] == '%' && word[1] != '%';
}

bool TakesFile(const std::string& word) {
    return word == "%f" || word == "%F" || word == "%u" || word == "%U";
}

} // namespace

std::optional<std::vector<std::string>> ParseExec(std::string_view exec) {
    std::vector<std::string> words;
    for (std::size_t at = 0; (at = exec.find_first_not_of(" \t", at)) < exec.size();) {
        std::string word;
        const bool isQuoted = exec[at] == '"';
        at += isQuoted ? 1 : 0;
        for (; at < exec.size() && (isQuoted ? exec[at] != '"' : exec[at] != ' ' && exec[at] != '\t'); ++at) {
            if (isQuoted && exec[at] == '\\' && at + 1 < exec.size())
                ++at;
            else if (!isQuoted && (exec[at] == '"' || MustBeQuoted.find(exec[at]) != std::string_view::npos))
                return std::nullopt;
            word += exec[at];
        }
        if (isQuoted && at++ >= exec.size())
            return std::nullopt;
        words.push_back(std::move(word));
    }
    return words;
}

std::optional<DesktopEntry> ParseDesktopEntry(std::string_view text, const std::string& file) {
    const Group group = ReadGroup(text, "Desktop Entry");
    const std::string exec = Unescape(ValueOf(group, "Exec"));
    auto words = exec.size() <= LongestExec ? ParseExec(exec) : std::nullopt;
    if (ValueOf(group, "Type") != "Application" || ValueOf(group, "Hidden") == "true" || !words ||
        words->empty())
        return std::nullopt;
    return DesktopEntry{.Name = Unescape(ValueOf(group, "Name")),
                        .File = file,
                        .Icon = Unescape(ValueOf(group, "Icon")),
                        .Exec = *std::move(words),
                        .NeedsTerminal = ValueOf(group, "Terminal") == "true"};
}

std::vector<std::string> CommandFor(const DesktopEntry& entry, const std::string& hostPath) {
    std::vector<std::string> words;
    bool hasFile = false;
    for (const std::string& word : entry.Exec) {
        if (word == "%i" && !entry.Icon.empty())
            words.insert(words.end(), {"--icon", entry.Icon});
        else if (TakesFile(word))
            words.push_back(hostPath);
        else if (!IsFieldCode(word) || word == "%c" || word == "%k")
            words.push_back(Expand(word, entry, hostPath));
        hasFile = hasFile || word.find("%f") != std::string::npos || word.find("%F") != std::string::npos ||
                  word.find("%u") != std::string::npos || word.find("%U") != std::string::npos;
    }
    if (!hasFile)
        words.push_back(hostPath);
    if (entry.NeedsTerminal)
        words.insert(words.begin(), {"x-terminal-emulator", "-e"});
    return words;
}

std::optional<DesktopEntry> DefaultApplication(const std::vector<std::string>& mimeTypes) {
    const Candidates candidates;
    for (const std::string& mime : mimeTypes)
        for (const std::string& id : candidates.Of(mime)) {
            std::optional<DesktopEntry> entry = FindEntry(id);
            if (entry && dos::FindHostProgram(entry->Exec.front()))
                return entry;
        }
    return std::nullopt;
}

} // namespace workbench
