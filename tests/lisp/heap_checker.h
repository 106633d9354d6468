#pragma once

#include <xum/lisp/lisp_closure.h>
#include <xum/lisp/lisp_macro.h>
#include <xum/lisp/lisp_table.h>
#include <xum/lisp/lisp_type.h>

#include <cstdint>
#include <set>
#include <string>

/// The rules that lisp_check_heap goes through. Each check is false once something is wrong, which stops the others.
class HeapChecker {
public:
    explicit HeapChecker(lisp_interpreter* interpreter);

    bool check();

    const std::string& getProblem() const { return problem; }

private:
    bool fail(const std::string& what);

    // heap_checker.cpp: the region, the registries, and what rests between evaluations
    bool checkRegion();
    bool checkBitmap();
    bool checkRest();
    bool checkStaticObject(const lisp_object& object, lisp_kind kind, std::int64_t value);
    bool checkStaticObjects();
    bool checkTypes();
    bool checkTypeParameters(const lisp_type* type);
    bool checkNames();
    bool checkName(const lisp_name* name, std::uint64_t bucket);
    bool checkSlots();

    // heap_checker_values.cpp: one object and what it points to
    bool isInByteArea(const void* address, std::uint64_t size) const;
    bool isUsedSlot(const lisp_object* object) const;
    bool checkObject(const lisp_object* object);
    bool checkTypeArguments(const lisp_object* object);
    bool checkPayload(const lisp_object* object);
    bool checkString(const lisp_string* string);
    bool checkSymbol(const lisp_symbol* symbol);
    bool checkList(const lisp_list* list);
    bool checkArray(const lisp_array* array);
    bool checkTable(const lisp_table* table);
    bool checkTableRecord(const lisp_object* record);
    bool checkTableEntry(const lisp_table* table, const lisp_table_entry* entry, std::uint64_t bucket);
    bool checkClosure(const lisp_closure* closure);
    bool checkLispClosure(const lisp_closure* closure);
    bool checkMacro(const lisp_macro* macro);
    bool checkEnvironment(const lisp_environment* environment);

    lisp_interpreter* interpreter;
    const lisp_heap& heap;
    std::set<const lisp_type*> types;
    std::string problem;
};
