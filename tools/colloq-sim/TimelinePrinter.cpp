#include "TimelinePrinter.h"

#include <cstdio>
#include <iomanip>

namespace colloqsim {

namespace {

const char* colourOf(Direction direction) {
    switch (direction) {
    case Direction::ClientToPlugin: return "\033[36m";   // cyan
    case Direction::PluginToClient: return "\033[32m";   // green
    case Direction::PluginToHeadset: return "\033[33m";  // yellow
    case Direction::HeadsetToPlugin: return "\033[35m";  // magenta
    case Direction::HubToPlugin:
    case Direction::PluginToHub: return "\033[34m";  // blue
    case Direction::ClientLog: return "\033[90m";    // grey
    case Direction::Client: return "\033[37m";
    case Direction::Note: return "\033[1m";
    }
    return "";
}

class TextPrinter : public TimelinePrinter {
public:
    TextPrinter(std::ostream& out, bool colour) : out_(out), colour_(colour) {}

    void print(const TimelineEvent& event) override {
        const std::string direction = directionText(event.direction);
        // The arrows are three bytes and one column wide; pad by columns, not bytes.
        std::size_t columns = 0;
        for (const unsigned char c : direction) {
            columns += (c & 0xC0) != 0x80 ? 1 : 0;
        }
        const std::string padding(columns < 19 ? 19 - columns : 1, ' ');
        if (colour_) {
            out_ << colourOf(event.direction);
        }
        out_ << std::setw(7) << event.milliseconds << " ms  " << direction << padding << event.text;
        if (colour_) {
            out_ << "\033[0m";
        }
        out_ << '\n' << std::flush;
    }

    void problem(const std::string& text) override {
        if (colour_) {
            out_ << "\033[1;31m" << text << "\033[0m\n" << std::flush;
        } else {
            out_ << text << '\n' << std::flush;
        }
    }

    void say(const std::string& text) override { out_ << text << std::flush; }

private:
    std::ostream& out_;
    bool colour_;
};

class JsonPrinter : public TimelinePrinter {
public:
    explicit JsonPrinter(std::ostream& out) : out_(out) {}

    void print(const TimelineEvent& event) override {
        out_ << "{\"ms\":" << event.milliseconds << ",\"direction\":" << jsonString(directionKey(event.direction))
             << ",\"subject\":" << jsonString(event.subject) << ",\"verb\":" << jsonString(event.verb)
             << ",\"argument\":" << jsonString(event.argument) << ",\"text\":" << jsonString(event.text);
        if (event.direction == Direction::ClientLog) {
            out_ << ",\"severity\":" << event.severity;
        }
        out_ << "}\n" << std::flush;
    }

    void problem(const std::string& text) override {
        out_ << "{\"problem\":" << jsonString(text) << "}\n" << std::flush;
    }

    void say(const std::string& text) override { out_ << "{\"say\":" << jsonString(text) << "}\n" << std::flush; }

private:
    std::ostream& out_;
};

}  // namespace

std::unique_ptr<TimelinePrinter> makePrinter(OutputStyle style, std::ostream& out) {
    if (style == OutputStyle::Json) {
        return std::make_unique<JsonPrinter>(out);
    }
    return std::make_unique<TextPrinter>(out, style == OutputStyle::Colour);
}

std::string jsonString(const std::string& text) {
    std::string json = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            json += '\\';
            json += c;
        } else if (byte < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", byte);
            json += escaped;
        } else {
            json += c;
        }
    }
    return json + "\"";
}

}  // namespace colloqsim
