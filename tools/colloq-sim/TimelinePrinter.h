// Writes timeline events: readable lines (coloured by direction on a terminal, plain
// otherwise) or one JSON object a line for machines. Used under the timeline's lock, one event
// at a time.
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "TimelineEvent.h"

namespace colloqsim {

enum class OutputStyle { Plain, Colour, Json };

class TimelinePrinter {
public:
    virtual ~TimelinePrinter() = default;
    virtual void print(const TimelineEvent& event) = 0;
    // A failure or an error of the simulator itself, shown in the same stream.
    virtual void problem(const std::string& text) = 0;
    // Text for the person at the prompt (help, history, the prompt itself), as it is.
    virtual void say(const std::string& text) = 0;
};

std::unique_ptr<TimelinePrinter> makePrinter(OutputStyle style, std::ostream& out);

// Text in JSON string syntax, quotes included.
std::string jsonString(const std::string& text);

}  // namespace colloqsim
