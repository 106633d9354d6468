#include <xum/lisp/lisp_loader.h>

#include <xum/lisp/lisp_environment.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_reader.h>
#include <xum/lisp/lisp_type.h>

#include <cstdio>
#include <cstring>

static constexpr std::size_t path_size = 1024;

void lisp_strip_comments(char* text)
{
    char* out = text;
    for (const char* in = text; *in != '\0';) {
        if (*in != ';') {
            *out++ = *in++;
            continue;
        }
        in += std::strcspn(in, "\n");
        if (*in == '\n') ++in;
    }
    *out = '\0';
}

static const lisp_object* variable(lisp_interpreter* interpreter, const lisp_environment* environment, const char* name)
{
    const lisp_object* symbol = lisp_find_symbol(interpreter, environment, name);
    return symbol != nullptr ? symbol->payload.symbol->value : nullptr;
}

/* Scripts may bind these variables to anything: what is no string counts as nothing. */
static const char* text_of(const lisp_object* value)
{
    return value != nullptr && value->type->kind == lisp_kind_string ? value->payload.string->characters : nullptr;
}

static std::FILE* open_in(const char* directory, const char* name, const char* extension)
{
    char path[path_size];
    const int length = std::snprintf(path, sizeof path, "%s%s%s", directory, name, extension);
    return length >= 0 && static_cast<std::size_t>(length) < sizeof path ? std::fopen(path, "rb") : nullptr;
}

static std::FILE* open_script(lisp_interpreter* interpreter, lisp_environment* environment, const char* name)
{
    const lisp_object* path = variable(interpreter, environment, "*load-path*");
    const char* extension = text_of(variable(interpreter, environment, "*load-extension*"));
    if (path == nullptr || path->type->kind != lisp_kind_list || lisp_list_count(path) == 0) return nullptr;
    const lisp_cell* cell = path->payload.list->first;
    for (std::uint64_t i = 0; i < path->payload.list->count; ++i, cell = cell->next) {
        const char* directory = text_of(cell->element);
        if (directory == nullptr) continue;
        if (std::FILE* file = open_in(directory, name, extension != nullptr ? extension : "")) return file;
    }
    return nullptr;
}

/* The whole file with a zero behind it; null after a report. */
static char* read_script(lisp_interpreter* interpreter, std::FILE* file)
{
    std::fseek(file, 0, SEEK_END);
    const long size = std::ftell(file);
    std::fseek(file, 0, SEEK_SET);
    // A directory opens on some systems; its size is whatever the system says.
    const bool has_size = size >= 0 && static_cast<unsigned long>(size) < 0xFFFFFFF0u;
    char* text = nullptr;
    if (has_size) text = static_cast<char*>(lisp_allocate(interpreter, static_cast<std::uint64_t>(size) + 1));
    if (has_size && text == nullptr) {
        lisp_print_line(interpreter, "error: not enough memory!");
        return nullptr;
    }
    const std::size_t wanted = has_size ? static_cast<std::size_t>(size) : 0;
    if (!has_size || std::fread(text, 1, wanted, file) != wanted) {
        lisp_print_line(interpreter, "error: could not read from file!");
        return nullptr;
    }
    text[wanted] = '\0';
    return text;
}

bool lisp_load(lisp_interpreter* interpreter, lisp_environment* environment, const char* name)
{
    std::FILE* file = open_script(interpreter, environment, name);
    if (file == nullptr) {
        std::printf("error: file '%s' not found!\n", name);
        return false;
    }
    char* text = read_script(interpreter, file);
    std::fclose(file);
    if (text == nullptr) return false;
    lisp_strip_comments(text);
    return lisp_read_all(interpreter, text, &interpreter->root, 0, nullptr);
}
