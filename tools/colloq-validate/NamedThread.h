// Starting a thread of the validator: it names itself first and only then runs its body, and
// the starter learns whether it got that far.
#pragma once

#include <functional>
#include <string>
#include <thread>

namespace colloqvalidate {

// Starts body on a new thread named `name` (at most 15 characters) and waits until it runs.
// False and a reason when the system refused the thread; `thread` is then left empty.
bool startNamedThread(std::thread& thread, const std::string& name, std::function<void()> body, std::string* error);

}  // namespace colloqvalidate
