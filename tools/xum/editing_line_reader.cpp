#include "line_reader.h"

#include <histedit.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace {

constexpr int rememberedLines = 1000;

/// Empty when the environment names no place for it.
std::filesystem::path historyPath()
{
    const char* state = std::getenv("XDG_STATE_HOME");
    if (state != nullptr && *state != '\0') return std::filesystem::path(state) / "xum" / "history";
    const char* home = std::getenv("HOME");
    if (home == nullptr || *home == '\0') return {};
    return std::filesystem::path(home) / ".local" / "state" / "xum" / "history";
}

/// How many characters all names begin with.
std::size_t commonLength(const std::vector<std::string>& names)
{
    std::size_t length = names.front().size();
    for (const std::string& name : names) {
        const auto difference = std::mismatch(name.begin(), name.end(), names.front().begin(), names.front().end());
        length = std::min(length, static_cast<std::size_t>(difference.first - name.begin()));
    }
    return length;
}

class EditingLineReader final : public LineReader {
public:
    explicit EditingLineReader(Completer completer);
    ~EditingLineReader() override;
    EditingLineReader(const EditingLineReader&) = delete;
    EditingLineReader& operator=(const EditingLineReader&) = delete;

    Result read(const std::string& prompt, std::string& line) override;
    void remember(const std::string& line) override;
    bool isTerminal() const override { return true; }

private:
    static EditingLineReader& of(EditLine* editor);
    static char* showPrompt(EditLine* editor) { return of(editor).prompt.data(); }
    static unsigned char completeWord(EditLine* editor, int /*key*/) { return of(editor).complete(); }

    void useHistory(int operation, const char* text) { history(past, &event, operation, text); }
    unsigned char complete();
    static void list(const std::vector<std::string>& names);

    Completer completer;
    EditLine* editor = nullptr;
    History* past;
    HistEvent event = {};
    std::string prompt;
    std::string historyFile;
};

EditingLineReader::EditingLineReader(Completer completer) : completer(std::move(completer)), past(history_init())
{
    std::setlocale(LC_CTYPE, ""); // characters of more than one byte; numbers stay as they are
    editor = el_init("xum", stdin, stdout, stderr);
    el_set(editor, EL_CLIENTDATA, this);
    el_set(editor, EL_PROMPT, showPrompt);
    el_set(editor, EL_EDITOR, "emacs");
    el_set(editor, EL_ADDFN, "xum-complete", "Complete a name", completeWord);
    el_set(editor, EL_BIND, "^I", "xum-complete", nullptr);
    history(past, &event, H_SETSIZE, rememberedLines);
    history(past, &event, H_SETUNIQUE, 1);
    el_set(editor, EL_HIST, history, past);
    el_source(editor, nullptr); // the user's own keys

    const std::filesystem::path path = historyPath();
    if (path.empty()) return;
    std::error_code failure; // without a place to keep them, lines are remembered for this run only
    std::filesystem::create_directories(path.parent_path(), failure);
    historyFile = path.string();
    useHistory(H_LOAD, historyFile.c_str());
}

EditingLineReader::~EditingLineReader()
{
    el_end(editor);
    history_end(past);
}

EditingLineReader& EditingLineReader::of(EditLine* editor)
{
    void* data = nullptr;
    el_get(editor, EL_CLIENTDATA, &data);
    return *static_cast<EditingLineReader*>(data);
}

LineReader::Result EditingLineReader::read(const std::string& newPrompt, std::string& line)
{
    prompt = newPrompt;
    el_resize(editor);               // the window may have changed meanwhile
    el_set(editor, EL_PREP_TERM, 1); // before the prompt is shown: keys that follow it at once are not lost
    int length = 0;
    const char* text = el_gets(editor, &length);
    if (text == nullptr || length <= 0) {
        const bool isAbandoned = length < 0 && errno == EINTR;
        std::puts(isAbandoned ? "^C" : "");
        el_reset(editor);
        return isAbandoned ? Result::Abandoned : Result::End;
    }
    line.assign(text, static_cast<std::size_t>(length));
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    return Result::Line;
}

// Written at once, so that nothing is lost when a script ends the program.
void EditingLineReader::remember(const std::string& line)
{
    useHistory(H_ENTER, line.c_str());
    if (!historyFile.empty()) useHistory(H_SAVE, historyFile.c_str());
}

unsigned char EditingLineReader::complete()
{
    const LineInfo* info = el_line(editor);
    const char* begin = info->cursor;
    while (begin != info->buffer && std::strchr(" \t()'\"", begin[-1]) == nullptr) --begin;
    std::string word(begin, info->cursor);
    for (char& c : word)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a'); // as the reader takes names
    const std::vector<std::string> names = word.empty() ? std::vector<std::string>() : completer(word);
    if (names.empty()) return CC_ERROR;
    std::string added = names.front().substr(word.size(), commonLength(names) - word.size());
    if (names.size() == 1) added += ' ';
    if (added.empty()) {
        list(names);
        return CC_REDISPLAY;
    }
    el_insertstr(editor, added.c_str());
    return CC_REFRESH;
}

void EditingLineReader::list(const std::vector<std::string>& names)
{
    constexpr int columns = 3;
    int column = 0;
    for (const std::string& name : names) {
        std::printf("%s%-26s", column == 0 ? "\n" : "", name.c_str());
        column = (column + 1) % columns;
    }
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

std::unique_ptr<LineReader> makeEditingLineReader(Completer completer)
{
    return std::make_unique<EditingLineReader>(std::move(completer));
}
