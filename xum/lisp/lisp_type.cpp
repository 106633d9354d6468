#include <xum/lisp/lisp_type.h>

#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_convert.h>
#include <xum/lisp/lisp_evaluator.h>
#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_token.h>

#include <cstdio>
#include <cstring>

static constexpr std::size_t name_limit = 128;
static constexpr std::size_t parameter_limit = 255;

static std::size_t count_parameters(const char* parameters)
{
    if (*parameters == '\0') return 0;
    std::size_t count = 1;
    for (const char* c = parameters; *c != '\0'; ++c) count += *c == ' ' ? 1 : 0;
    return count;
}

static bool add_parameters(lisp_interpreter* interpreter, lisp_type* type, const char* parameters)
{
    lisp_type_parameter** link = &type->parameters;
    for (const char* begin = parameters; *begin != '\0';) {
        const std::size_t length = std::strcspn(begin, " ");
        *link = lisp_allocate_record<lisp_type_parameter>(interpreter);
        if (*link == nullptr) return false;
        (*link)->name = lisp_make_string(interpreter, begin, length);
        if ((*link)->name == nullptr) return false;
        link = &(*link)->next;
        begin += length + (begin[length] == ' ' ? 1 : 0);
    }
    return true;
}

/* A converter's record outside of the slot heap: the registry is no root that the marking of slots starts from. */
static bool keep_converter(lisp_interpreter* interpreter, lisp_object** kept, const lisp_object* converter)
{
    if (converter == nullptr) return true;
    *kept = lisp_allocate_record<lisp_object>(interpreter);
    if (*kept == nullptr) return false;
    lisp_copy_value(*kept, converter);
    return true;
}

static bool fill_type(lisp_interpreter* interpreter, lisp_type* type, const char* parameters)
{
    const std::uint8_t count = static_cast<std::uint8_t>(count_parameters(parameters));
    type->parameter_count = count;
    type->name_string = lisp_make_string(interpreter, type->name, std::strlen(type->name));
    if (type->name_string == nullptr || !add_parameters(interpreter, type, parameters)) return false;
    if (count != 0) {
        type->unset_arguments = lisp_allocate_elements<lisp_type_entry>(interpreter, count);
        if (type->unset_arguments == nullptr) return false;
    }
    type->as_argument = {type, 0, count, type->unset_arguments};
    type->kind = lisp_kind_other;
    type->is_self_evaluating = true;
    type->evaluate = lisp_evaluate_to_itself;
    return true;
}

static lisp_type* make_type(lisp_interpreter* interpreter, const char* name, const char* parameters,
                            void (*release)(lisp_interpreter* interpreter, lisp_object* object),
                            const lisp_object* from_string, const lisp_object* to_string, const lisp_object* to_hash)
{
    const std::size_t length = std::strlen(name);
    lisp_type* type = static_cast<lisp_type*>(lisp_allocate(interpreter, sizeof(lisp_type) + length + 1));
    lisp_name* key = lisp_intern(interpreter, name);
    if (type == nullptr || key == nullptr) return nullptr;
    char* own_name = reinterpret_cast<char*>(type + 1);
    std::memcpy(own_name, name, length + 1);
    *type = {};
    type->name = own_name;
    type->release = release;
    if (!fill_type(interpreter, type, parameters)) return nullptr;
    if (!keep_converter(interpreter, &type->from_string, from_string) ||
        !keep_converter(interpreter, &type->to_string, to_string) ||
        !keep_converter(interpreter, &type->to_hash, to_hash))
        return nullptr;
    if (!lisp_hash_table_put(&interpreter->types, key, type)) return nullptr;
    type->next = interpreter->newest_type;
    interpreter->newest_type = type;
    return type;
}

lisp_type* lisp_define_type(lisp_interpreter* interpreter, const char* name, const char* parameters,
                            void (*release)(lisp_interpreter* interpreter, lisp_object* object),
                            const lisp_object* from_string, const lisp_object* to_string, const lisp_object* to_hash)
{
    if (std::strlen(name) >= name_limit || count_parameters(parameters) > parameter_limit) return nullptr;
    lisp_type* type = make_type(interpreter, name, parameters, release, from_string, to_string, to_hash);
    if (type == nullptr) lisp_out_of_memory(interpreter);
    return type;
}

lisp_type* lisp_find_type(lisp_interpreter* interpreter, const char* name)
{
    const lisp_name* key = lisp_find_name(interpreter, name, std::strlen(name));
    return key != nullptr ? static_cast<lisp_type*>(lisp_hash_table_get(&interpreter->types, key)) : nullptr;
}

bool lisp_is_type_name(const char* name, std::uint64_t length)
{
    static const char* const reserved[] = {":any", ":lazy", ":rest", ":optional", ":key"};
    if (length < 4 || !lisp_is_keyword_text(name, length)) return false;
    for (const char* word : reserved)
        if (std::strlen(word) == length && std::memcmp(word, name, length) == 0) return false;
    return true;
}

/* Text that is cut where the room ends. */
struct text_writer {
    char* out;
    std::size_t size;
    std::size_t length;
};

static void write_text(text_writer* writer, const char* text)
{
    for (; *text != '\0' && writer->length + 1 < writer->size; ++text) writer->out[writer->length++] = *text;
    if (writer->size != 0) writer->out[writer->length] = '\0';
}

static text_writer start_text(char* out, std::size_t size)
{
    text_writer writer;
    writer.out = out;
    writer.size = size;
    writer.length = 0;
    write_text(&writer, "");
    return writer;
}

static void write_entry(text_writer* writer, const lisp_type_entry* entry);

static void write_arguments(text_writer* writer, const char* separator, const lisp_type_entry* entries,
                            std::uint8_t count)
{
    for (std::uint8_t i = 0; i < count; ++i) {
        if (i != 0) write_text(writer, separator);
        write_entry(writer, &entries[i]);
    }
    write_text(writer, ")");
}

static void write_type(text_writer* writer, const lisp_type* type, const lisp_type_entry* arguments, std::uint8_t count)
{
    if (count == 0) {
        write_text(writer, type->name);
    } else if (type->kind == lisp_kind_closure) {
        write_text(writer, "(");
        write_arguments(writer, " -> ", arguments, count);
    } else {
        write_text(writer, "(");
        write_text(writer, type->name);
        write_text(writer, " ");
        write_arguments(writer, " ", arguments, count);
    }
}

/* Entries nest no deeper than the parser of types allows. */
static void write_entry(text_writer* writer, const lisp_type_entry* entry)
{
    const char variable[] = {':', entry->letter, '\0'};
    if (entry->type != nullptr)
        write_type(writer, entry->type, entry->arguments, entry->count);
    else
        write_text(writer, entry->letter != 0 ? variable : ":any");
}

std::size_t lisp_write_entry(const lisp_interpreter* /*interpreter*/, const lisp_type_entry* entry, char* out,
                             std::size_t size)
{
    text_writer writer = start_text(out, size);
    write_entry(&writer, entry);
    return writer.length;
}

std::size_t lisp_write_value_type(const lisp_interpreter* /*interpreter*/, const lisp_object* object, char* out,
                                  std::size_t size)
{
    text_writer writer = start_text(out, size);
    if (object->type->kind == lisp_kind_closure)
        write_text(&writer, object->payload.closure->signature->characters);
    else
        write_type(&writer, object->type, object->type_arguments, object->type_argument_count);
    return writer.length;
}
