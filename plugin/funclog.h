// Scope tracer: writes "entry" to the local log when a scope opens and "exit " when it closes,
// "exit on exception" when it is left by an exception.
#pragma once

class funclog {
public:
    // `name` must outlive the tracer; callers pass the function's signature text.
    explicit funclog(const char* name);
    ~funclog();

    funclog(const funclog&) = delete;
    funclog& operator=(const funclog&) = delete;

private:
    const char* name;
    // Exceptions already in flight when the scope opened, so that a tracer inside a destructor
    // run by unwinding does not report its own normal exit as an exception.
    int exceptionsAtEntry;
};
