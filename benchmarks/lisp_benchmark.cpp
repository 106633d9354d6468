#include <xum/lisp/lisp.h>
#include <xum/lisp/lisp_memory.h>
#include <xum/lisp/lisp_object.h>
#include <xum/lisp/lisp_reader.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

// The script language: calls, expressions, lists, tables, strings, macros, reading, collecting, and what an object slot
// costs in a heap that is nearly full. Payload bytes never come back, so every run has an interpreter of its own and a
// fixed number of rounds.

namespace {

bool hasFailed = false;

void countErrors(void* /*user*/, const char* text)
{
    if (std::string(text).find("error: ") == std::string::npos) return;
    hasFailed = true;
    std::fprintf(stderr, "%s\n", text);
}

void endWith(const char* text)
{
    std::fprintf(stderr, "%s\n", text);
    std::exit(EXIT_FAILURE);
}

const lisp_output output = {countErrors, endWith, nullptr};

/// An interpreter, zeroed as it must be.
struct Interpreter {
    std::unique_ptr<lisp_interpreter> state = std::make_unique<lisp_interpreter>();

    Interpreter()
    {
        if (!lisp_start(state.get(), &output, lisp_region_size)) endWith("there is no memory");
    }
    ~Interpreter() { lisp_stop(state.get()); }
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    void run(const std::string& text) const
    {
        state->memory->unlock_all(&state->heap);
        if (!lisp_read_all(state.get(), text.c_str(), &state->root, 0, nullptr)) hasFailed = true;
    }
};

constexpr int elements = 10000;

/// Defines xs, the list of 0 to 9999.
const char* const prelude = "(define l10 (list 0 1 2 3 4 5 6 7 8 9)) (define n 10000) (define xs (list))"
                            "(define push-1 (closure ((x)) -> :any (do (set! n (- n 1)) (set! xs (cons n xs)))))"
                            "(define push-10 (closure ((x)) -> :any (for-each push-1 l10)))"
                            "(define push-100 (closure ((x)) -> :any (for-each push-10 l10)))"
                            "(define push-1000 (closure ((x)) -> :any (for-each push-100 l10)))"
                            "(for-each push-1000 l10)";

/// Evaluates the round for every iteration; each counts as `operations`. Slots and bytes per operation are counted,
/// too.
void measure(benchmark::State& state, const std::string& definitions, const std::string& round, double operations)
{
    const Interpreter interpreter;
    interpreter.run(prelude);
    if (!definitions.empty()) interpreter.run(definitions);
    interpreter.run(round); // the first round makes the symbols of parameters
    const lisp_heap& heap = interpreter.state->heap;
    const std::uint64_t objects = heap.live_objects;
    const std::uint64_t bytes = heap.allocated_bytes;
    for (auto _ : state) interpreter.run(round);
    const double all = operations * static_cast<double>(state.iterations());
    state.counters["time"] =
        benchmark::Counter(operations, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["slots"] = static_cast<double>(heap.live_objects - objects) / all;
    state.counters["bytes"] = static_cast<double>(heap.allocated_bytes - bytes) / all;
    if (hasFailed) state.SkipWithError("the script failed");
}

void registerScript(const char* name, const char* definitions, const char* round, double operations)
{
    benchmark::RegisterBenchmark(name, [=](benchmark::State& state) { measure(state, definitions, round, operations); })
        ->Iterations(10)
        ->Unit(benchmark::kMicrosecond);
}

std::string readingText()
{
    std::string text;
    for (int i = 0; text.size() < 1000000; ++i) {
        const std::string number = std::to_string(i % 1000);
        text +=
            "'(symbol-" + number + " " + number + " 1.5 \"text " + number + " of it\" :key (a b (c " + number + ")))\n";
    }
    return text;
}

void read(benchmark::State& state)
{
    const Interpreter interpreter;
    const std::string text = readingText();
    for (auto _ : state) interpreter.run(text);
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * static_cast<std::int64_t>(state.iterations()));
    if (hasFailed) state.SkipWithError("the script failed");
}

void startAndStop(benchmark::State& state)
{
    for (auto _ : state) Interpreter();
}

/// One more object among so many; the slot found is the lowest free one.
void allocateAmong(benchmark::State& state)
{
    const Interpreter interpreter;
    lisp_heap* heap = &interpreter.state->heap;
    const lisp_object_descriptor descriptor = {interpreter.state->kinds[lisp_kind_integer], 0, 0, nullptr};
    while (heap->live_objects < static_cast<std::uint64_t>(state.range(0)))
        if (lisp_allocate_object(heap, &descriptor) == nullptr) endWith("the heap is full");
    for (auto _ : state)
        if (lisp_allocate_object(heap, &descriptor) == nullptr) state.SkipWithError("the heap is full");
}

/// While it exists, what the C library prints is thrown away.
struct QuietOutput {
#ifdef __GLIBC__
    std::FILE* saved = stdout;
    QuietOutput()
    {
        stdout = std::fopen("/dev/null", "w");
    }
    ~QuietOutput()
    {
        std::fclose(stdout);
        stdout = saved;
    }
#endif
};

/// A list of a million integers, all of them live.
void collect(benchmark::State& state)
{
    const Interpreter interpreter;
    interpreter.run(prelude);
    interpreter.run("(define all (list)) (define add (closure ((x)) -> :any (set! all (cons x all))))"
                    "(define add-all (closure ((r)) -> :any (for-each add xs)))"
                    "(for-each add-all '(0 1 2 3 4 5 6 7 8 9)) (for-each add-all '(0 1 2 3 4 5 6 7 8 9))");
    for (int i = 0; i < 8; ++i) interpreter.run("(for-each add-all '(0 1 2 3 4 5 6 7 8 9))");
    const QuietOutput quiet; // each collection prints a line
    for (auto _ : state) interpreter.run("(full-garbage-collection)");
}

} // namespace

int main(int argc, char** argv)
{
    registerScript("call_native", "", "(for-each bit-not xs)", elements);
    registerScript("call_closure",
                   "(define add2 (closure ((a) (b)) -> :any (+ a b)))"
                   "(define one (closure ((x)) -> :any (add2 x x)))",
                   "(for-each one xs)", 2.0 * elements);
    registerScript("call_typed_closure",
                   "(define add2 (closure ((a :integer) (b :integer)) -> :integer (+ a b)))"
                   "(define one (closure ((x)) -> :integer (add2 x x)))",
                   "(for-each one xs)", 2.0 * elements);
    registerScript("arithmetic",
                   "(define res 0) (define one (closure ((x)) -> :any (set! res"
                   "(- (+ (+ x 1) (- x 2)) (- (* x 3) (+ 4 x))))))",
                   "(for-each one xs)", 7.0 * elements);
    registerScript("if_do", "(define one (closure ((x)) -> :any (if (< x 5000) (do x) (do x x))))", "(for-each one xs)",
                   elements);
    registerScript("map", "(define double (closure ((x)) -> :integer (* x 2)))", "(map double xs)", elements);
    registerScript("hash_table_put_get",
                   "(define h (hash-table \":integer\" \":integer\")) (define res 0)"
                   "(define use (closure ((k)) -> :any (do (hash-table-put! h (* k 7919) k)"
                   "(set! res (hash-table-get h (* k 7919))))))",
                   "(for-each use xs)", elements);
    registerScript("strings",
                   "(define res \"\") (define one (closure ((x)) -> :any"
                   "(set! res (+ \"item-\" (to-string x) \"-end\"))))",
                   "(for-each one xs)", elements);
    registerScript("macro",
                   "(define addm (macro (a b) (+ ,a (* ,b 2)))) (define res 0)"
                   "(define one (closure ((x)) -> :any (set! res (addm x 3))))",
                   "(for-each one xs)", elements);
    benchmark::RegisterBenchmark("read_megabyte", read)->Iterations(5)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("start_and_stop", startAndStop)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("allocate_object", allocateAmong)
        ->Arg(10000)
        ->Arg(1000000)
        ->Arg(10000000)
        ->ArgName("live")
        ->Iterations(100000);
    benchmark::RegisterBenchmark("collect_million", collect)->Unit(benchmark::kMillisecond)->Iterations(20);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return hasFailed ? EXIT_FAILURE : EXIT_SUCCESS;
}
