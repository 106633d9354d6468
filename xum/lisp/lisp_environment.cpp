#include <xum/lisp/lisp_environment.h>

#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>

#include <cstring>

bool lisp_environment_start(lisp_interpreter* interpreter)
{
    constexpr std::uint32_t root_buckets = 1000;
    interpreter->root.parent = nullptr;
    return lisp_hash_table_init(&interpreter->root.table, root_buckets, false, interpreter);
}

lisp_environment* lisp_environment_make(lisp_interpreter* interpreter, lisp_environment* parent)
{
    lisp_environment* environment = lisp_allocate_record<lisp_environment>(interpreter);
    if (environment == nullptr || !lisp_hash_table_init(&environment->table, 1, true, interpreter)) return nullptr;
    environment->parent = parent;
    environment->trace_round = 0;
    return environment;
}

lisp_object* lisp_find_symbol(lisp_interpreter* interpreter, const lisp_environment* environment, const char* name)
{
    const lisp_name* interned = lisp_find_name(interpreter, name, std::strlen(name));
    return interned != nullptr ? lisp_find_symbol(environment, interned) : nullptr;
}

bool lisp_store_value(lisp_interpreter* interpreter, lisp_symbol* symbol, const lisp_object* value)
{
    if (symbol->value == nullptr) {
        symbol->value = lisp_copy_to_slot(interpreter, value);
        return symbol->value != nullptr;
    }
    lisp_copy_value(symbol->value, value);
    return true;
}

static lisp_object* enter_new_symbol(lisp_interpreter* interpreter, lisp_environment* environment, lisp_name* name)
{
    lisp_object* symbol = lisp_make_symbol(interpreter, name);
    if (symbol == nullptr) return nullptr;
    if (!lisp_hash_table_put(&environment->table, name, symbol)) {
        lisp_out_of_memory(interpreter);
        return nullptr;
    }
    if (environment->parent == nullptr) name->root_symbol = symbol;
    return symbol;
}

lisp_object* lisp_set_symbol(lisp_interpreter* interpreter, lisp_environment* environment, lisp_name* name,
                             const lisp_object* value, bool is_constant, bool create_new)
{
    if (environment == nullptr) {
        interpreter->output->error("lisp_set_symbol() -> null environment!");
        return nullptr;
    }
    lisp_object* symbol = create_new ? nullptr : lisp_find_symbol(environment, name);
    if (symbol == nullptr) symbol = enter_new_symbol(interpreter, environment, name);
    if (symbol == nullptr || !lisp_store_value(interpreter, symbol->payload.symbol, value)) return nullptr;
    symbol->payload.symbol->is_constant = is_constant;
    return symbol;
}
