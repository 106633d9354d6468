#include "lisp_session.h"

#include "commands.h"
#include "interruption.h"
#include "report.h"

#include <xum/files/data_root.h>
#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_printer.h>
#include <xum/lisp/lisp_reader.h>
#include <xum/lisp/lisp_type.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

// The fatal handler is one function for the whole process, so what it needs to know is, too.
bool isReading = false; // the reader's complaint about an empty token is followed by where it is: no reason to end
bool isSilent = false;

void printLine(void* /*user*/, const char* text)
{
    std::puts(text);
}

void endFatally(const char* text)
{
    if (isSilent) return;
    std::string line = text;
    while (!line.empty() && line.back() == '\n') line.pop_back();
    report("xum: " + line);
    if (!isReading) std::exit(exitFailure);
}

/// Sets a flag as long as it lives.
class Meanwhile {
public:
    explicit Meanwhile(bool& flag) : flag(flag) { flag = true; }
    ~Meanwhile() { flag = false; }
    Meanwhile(const Meanwhile&) = delete;
    Meanwhile& operator=(const Meanwhile&) = delete;

private:
    bool& flag;
};

} // namespace

LispSession::LispSession() : interpreter(), output{printLine, endFatally, nullptr}
{
    if (!lisp_start(&interpreter, &output, lisp_region_size)) throw std::runtime_error("no memory for the script heap");
    setLoadPath("");
}

LispSession::~LispSession()
{
    lisp_stop(&interpreter);
}

bool LispSession::readExpression(const ScriptText& script, lisp_object* result, std::int64_t& next)
{
    const std::int64_t begin = next;
    {
        const Meanwhile reading(isReading);
        next = lisp_read(&interpreter, result, &interpreter.root, script.getText().c_str(), begin);
    }
    if (next != 0) return true;
    const Meanwhile silent(isSilent);
    std::int64_t ignored = 0;
    const std::string problem = findReadProblem(script, begin, ignored);
    const std::uint64_t place = static_cast<std::uint64_t>(begin);
    report(!problem.empty() ? problem : script.describePlace(place) + ": no memory is left to read it into");
    return false;
}

bool LispSession::run(const ScriptText& script, Printing printing)
{
    interpreter.memory->unlock_all(&interpreter.heap);
    lisp_object* frame = lisp_push_frame(&interpreter, 2); // where a collection sees them
    if (frame == nullptr) return false;
    std::int64_t next = 0;
    bool isRead = false;
    do {
        isRead = readExpression(script, &frame[0], next);
        if (isRead && !isInterrupted()) lisp_eval(&interpreter, &frame[1], &interpreter.root, &frame[0]);
        if (takeInterruption()) {
            report("interrupted");
            break;
        }
        const bool isWanted = printing == Printing::EachValue || (printing == Printing::LastValue && next == -1);
        if (isRead && isWanted) lisp_print(&interpreter, &interpreter.root, &frame[1], "");
    } while (isRead && next != -1);
    lisp_pop_frame(&interpreter, frame);
    return isRead;
}

void LispSession::setLoadPath(std::string directory)
{
    if (!directory.empty() && directory.back() != '/') directory += '/';
    if (directory.empty()) directory = "./";
    const std::string directories[] = {directory, defaultDataRoot() + "lisp/"};
    lisp_list* list = lisp_make_list(&interpreter, std::size(directories));
    lisp_name* name = lisp_intern(&interpreter, "*load-path*");
    if (list == nullptr || name == nullptr) return;
    lisp_cell* cell = list->first;
    for (const std::string& text : directories) {
        lisp_object element = {};
        if (!lisp_set_text(&interpreter, &element, text.data(), text.size())) return;
        cell->element = lisp_copy_to_slot(&interpreter, &element);
        if (cell->element == nullptr) return;
        cell = cell->next;
    }
    lisp_object value = {};
    lisp_set_list(&interpreter, &value, list, interpreter.kinds[lisp_kind_string]);
    lisp_set_symbol(&interpreter, &interpreter.root, name, &value, false, false);
}

LispSession::Completeness LispSession::findCompleteness(const std::string& text)
{
    const Meanwhile silent(isSilent);
    lisp_tokens tokens;
    for (std::size_t offset = 0;;) {
        if (lisp_tokenize(&tokens, text.c_str() + offset) == 0) {
            if (tokens.problem == lisp_read_nothing) return Completeness::Empty;
            return tokens.problem == lisp_read_open_list ? Completeness::Open : Completeness::Complete;
        }
        offset += tokens.consumed;
        if (offset >= text.size()) return Completeness::Complete;
    }
}

std::vector<std::string> LispSession::listNames() const
{
    std::vector<std::string> names;
    const lisp_hash_table& table = interpreter.root.table;
    for (std::uint32_t i = 0; i < table.bucket_count; ++i)
        for (const lisp_hash_entry* entry = table.buckets[i]; entry != nullptr; entry = entry->next)
            names.emplace_back(entry->key->text.characters, entry->key->text.length);
    std::sort(names.begin(), names.end());
    return names;
}

std::string LispSession::findSignature(const std::string& name)
{
    const lisp_object* symbol = lisp_find_symbol(&interpreter, &interpreter.root, name.c_str());
    const lisp_object* value = symbol != nullptr ? symbol->payload.symbol->value : nullptr;
    if (value == nullptr || value->type->kind != lisp_kind_closure) return {};
    return value->payload.closure->signature->characters;
}
