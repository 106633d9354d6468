#include "heap_check.h"
#include "heap_checker.h"

#include <xum/lisp/lisp_hash_table.h>
#include <xum/lisp/lisp_memory.h>

#include <bit>
#include <cstring>

std::string lisp_check_heap(lisp_interpreter* interpreter)
{
    HeapChecker checker(interpreter);
    checker.check();
    return checker.getProblem();
}

HeapChecker::HeapChecker(lisp_interpreter* interpreter) : interpreter(interpreter), heap(interpreter->heap) {}

bool HeapChecker::check()
{
    return checkRegion() && checkBitmap() && checkRest() && checkTypes() && checkStaticObjects() && checkNames() &&
           checkEnvironment(&interpreter->root) && checkSlots();
}

bool HeapChecker::fail(const std::string& what)
{
    problem = what;
    return false;
}

bool HeapChecker::checkRegion()
{
    const std::uint64_t bitmapBytes = heap.bitmap_words * sizeof(std::uint64_t);
    const std::uint64_t firstTop = (heap.region_size - bitmapBytes) / 8 * 8;
    if (heap.slot_count != heap.region_size / sizeof(lisp_object)) return fail("wrong number of slots");
    if (heap.bitmap_words != (heap.slot_count + 63) / 64) return fail("wrong number of bitmap words");
    if (static_cast<void*>(heap.bitmap) != heap.region) return fail("the bitmap is not at the start of the region");
    if (static_cast<void*>(heap.slots) != static_cast<void*>(heap.bitmap + heap.bitmap_words))
        return fail("the slots do not begin behind the bitmap");
    if (heap.boundary % sizeof(lisp_object) != 0) return fail("the boundary is not the end of a slot");
    if (heap.boundary >= heap.byte_top) return fail("the boundary has reached the byte area");
    if (heap.byte_top + heap.allocated_bytes != firstTop) return fail("the byte counter differs from the byte area");
    return true;
}

bool HeapChecker::checkBitmap()
{
    std::uint64_t used = 0;
    for (std::uint64_t word = 0; word < heap.bitmap_words; ++word) {
        const std::uint64_t bits = heap.bitmap[word];
        used += static_cast<std::uint64_t>(std::popcount(bits));
        if (word < heap.lowest_word && ~bits != 0)
            return fail("word " + std::to_string(word) + " has a free slot but lies below the lowest word");
        if (bits == 0) continue;
        const std::uint64_t highest = word * 64 + 63 - static_cast<std::uint64_t>(std::countl_zero(bits));
        if ((highest + 1) * sizeof(lisp_object) > heap.boundary)
            return fail("slot " + std::to_string(highest) + " is in use at or above the boundary");
    }
    if (used == heap.live_objects) return true;
    return fail(std::to_string(used) + " slots in use but " + std::to_string(heap.live_objects) + " live objects");
}

bool HeapChecker::checkRest()
{
    if (interpreter->stack_origin != nullptr) return fail("an evaluation is running");
    if (interpreter->stack_top != interpreter->stack) return fail("the value stack is not empty");
    if (interpreter->activation != nullptr) return fail("an activation is left");
    if (interpreter->is_abandoned) return fail("the abandoned flag is left");
    if (interpreter->tables_in_use != 0) return fail("a table is still marked as in use");
    if (heap.lock_floor > heap.lock_epoch) return fail("the lock floor is above the epoch");
    return true;
}

bool HeapChecker::checkStaticObject(const lisp_object& object, lisp_kind kind, std::int64_t value)
{
    const bool isUntouched = object.type == interpreter->kinds[kind] && object.flag == 0 &&
                             object.payload.integer == value && object.lock_stamp == 0 && object.mark_stamp == 0;
    return isUntouched || fail("the static object of kind " + std::to_string(kind) + " has changed");
}

bool HeapChecker::checkStaticObjects()
{
    const lisp_object& list = interpreter->root_list;
    if (!checkStaticObject(interpreter->nil, lisp_kind_nil, 0)) return false;
    if (!checkStaticObject(interpreter->boolean_false, lisp_kind_boolean, 0)) return false;
    if (!checkStaticObject(interpreter->boolean_true, lisp_kind_boolean, 1)) return false;
    if (!checkStaticObject(list, lisp_kind_list, 0)) return false;
    if (list.type_argument_count != 1 || !isInByteArea(list.type_arguments, sizeof(lisp_type_entry)))
        return fail("the empty list has no type argument");
    const lisp_type_entry& entry = list.type_arguments[0];
    if (entry.type != nullptr || entry.letter != 0 || entry.count != 0) return fail("the empty list has got a type");
    return true;
}

bool HeapChecker::checkTypeParameters(const lisp_type* type)
{
    std::uint32_t count = 0;
    for (const lisp_type_parameter* parameter = type->parameters; parameter != nullptr; parameter = parameter->next) {
        ++count;
        if (!isInByteArea(parameter, sizeof *parameter) || !checkString(parameter->name)) return fail("bad parameter");
    }
    if (count != type->parameter_count) return fail(std::string(type->name) + " has lost a parameter");
    if (type->as_argument.type != type || type->as_argument.count != count) return fail("bad argument entry of a type");
    return true;
}

bool HeapChecker::checkTypes()
{
    for (const lisp_type* type = interpreter->newest_type; type != nullptr; type = type->next) {
        if (!isInByteArea(type, sizeof *type)) return fail("a type record lies outside of the byte area");
        types.insert(type);
        if (lisp_find_type(interpreter, type->name) != type) return fail("a type is not in the registry");
        if (!checkString(type->name_string) || !checkTypeParameters(type)) return false;
        for (const lisp_object* converter : {type->from_string, type->to_string, type->to_hash}) {
            if (converter == nullptr) continue;
            if (converter->type != interpreter->kinds[lisp_kind_closure]) return fail("a converter is no closure");
            if (!checkClosure(converter->payload.closure)) return false;
        }
    }
    if (types.size() != interpreter->types.count) return fail("the registry and the list of types differ");
    for (int kind = 0; kind < static_cast<int>(lisp_built_in_type_count); ++kind)
        if (!types.contains(interpreter->kinds[kind]) || interpreter->kinds[kind]->kind != kind)
            return fail("a built-in type is not registered");
    return true;
}

bool HeapChecker::checkName(const lisp_name* name, std::uint64_t bucket)
{
    const std::string text(name->text.characters, name->text.length);
    if (!isInByteArea(name, sizeof *name) || !checkString(&name->text)) return fail("bad name record");
    if (name->hash != lisp_string_hash(text.data(), text.size())) return fail("wrong hash of " + text);
    if ((name->hash & (interpreter->name_bucket_count - 1)) != bucket) return fail(text + " is in a wrong bucket");
    if (lisp_find_name(interpreter, text.data(), text.size()) != name) return fail(text + " is interned twice");
    if (lisp_hash_table_get(&interpreter->root.table, name) != name->root_symbol)
        return fail(text + " does not know what the root binds to it");
    if (name->carrier == nullptr) return true;
    if (!isUsedSlot(name->carrier)) return fail("the carrier of " + text + " is not alive");
    if (name->carrier->type != interpreter->kinds[lisp_kind_symbol]) return fail("a carrier is no symbol");
    const lisp_symbol* symbol = name->carrier->payload.symbol;
    if (symbol->name != name || symbol->value != nullptr) return fail("the carrier of " + text + " is bound");
    return true;
}

bool HeapChecker::checkNames()
{
    std::uint64_t count = 0;
    for (std::uint64_t i = 0; i < interpreter->name_bucket_count; ++i) {
        for (const lisp_name* name = interpreter->names[i]; name != nullptr; name = name->next) {
            ++count;
            if (!checkName(name, i)) return false;
        }
    }
    return count == interpreter->name_count || fail("wrong number of names");
}

bool HeapChecker::checkSlots()
{
    const std::uint64_t end = heap.boundary / sizeof(lisp_object);
    for (std::uint64_t slot = 0; slot < end; ++slot) {
        if (!lisp_slot_is_used(&heap, slot) || checkObject(&heap.slots[slot])) continue;
        problem += " (slot " + std::to_string(slot) + ")";
        return false;
    }
    return true;
}
