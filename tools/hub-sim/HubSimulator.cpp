#include "HubSimulator.h"

#include <cstdio>
#include <cstring>

#include "bqlutil/Converter.h"
#include "bqlutil/DeviceIds.h"
#include "hubproxy/ColloqRecords.h"
#include "platform/PortDirectory.h"

namespace {

// Time-out of every send to the plug-in, as the plug-in's own sends use.
constexpr int kSendTimeoutSeconds = 5;

}  // namespace

HubSimulator::HubSimulator(boost::asio::io_context& loop, bool asJson, std::optional<std::string> device,
                           std::ostream& output, std::ostream& errors)
    : events(loop),
      json(asJson),
      activeDevice(std::move(device)),
      out(output),
      err(errors),
      pipe(
          [this](unsigned char* data, int length) {
              std::vector<unsigned char> block(data, data + length);
              boost::asio::post(events, [this, block = std::move(block)] { OnBlock(block); });
              return 0;
          },
          kSendTimeoutSeconds) {}

bool HubSimulator::Start() {
    const std::optional<std::string> directory = bql::platform::OpenPortDirectory();
    const std::optional<std::string> port =
        directory ? bql::platform::PortFilePath(*directory, MAC_PIPE_HUB_SIDE_) : std::nullopt;
    if (!port) {
        ShowError("port directory " + bql::platform::PortDirectoryPath() +
                  " is refused or cannot be made (it must be a directory of this user with mode 0700)");
        return false;
    }
    pipe.StartPipe();
    if (!pipe.IsListening()) {
        ShowError("cannot own " + *port + ": another hub is running");
        return false;
    }
    ShowNotice("listening", *port);
    return true;
}

void HubSimulator::Stop() { pipe.StopPipe(); }

void HubSimulator::Execute(const HubCommand& command) {
    switch (command.kind) {
    case HubCommand::Kind::HeadsetEvent: {
        const std::string device = command.device ? *command.device : activeDevice.value_or("");
        SendRecord(BuildHeadsetEvent(command.state, command.callId, Converter::ConvertToWString(device).c_str(),
                                     command.extra.c_str(), command.keys.c_str()));
        break;
    }
    case HubCommand::Kind::Dial:
        SendRecord(BuildDialRequest(Converter::ConvertToWString(command.number).c_str()));
        break;
    case HubCommand::Kind::SetActive:
        activeDevice = command.device;
        SendReport();
        break;
    case HubCommand::Kind::ClearActive:
        activeDevice.reset();
        SendReport();
        break;
    case HubCommand::Kind::Report:
        SendReport();
        break;
    case HubCommand::Kind::Help:
        out << CommandHelp() << std::flush;
        break;
    case HubCommand::Kind::Nothing:
    case HubCommand::Kind::Sleep:
    case HubCommand::Kind::Quit:
        break;
    }
}

void HubSimulator::ShowError(const std::string& text) {
    if (json) {
        ShowNotice("error", text);
    } else {
        err << "error: " << text << std::endl;
    }
}

void HubSimulator::OnBlock(const std::vector<unsigned char>& block) {
    if (block.size() != sizeof(ColloqCallArgs)) {
        const int length = static_cast<int>(block.size());
        out << (json ? OddBlockAsJson(length) : DescribeOddBlock(length)) << std::endl;
        return;
    }
    ColloqCallArgs record;
    std::memcpy(&record, block.data(), sizeof record);
    Show(record, Direction::Received);
    Answer(record);
}

void HubSimulator::Answer(const ColloqCallArgs& request) {
    if (request.messageType != MESSAGE_TYPE_ACTIVE_DEVICE) {
        return;
    }
    if (request.deviceAction == DEVICE_ACTION_GET) {
        SendReport();
    } else if (request.deviceAction == DEVICE_ACTION_SET) {
        FollowSetRequest(request.productId);
    }
}

// The hub makes the device with that product id active: the current one when it matches, else a
// device of that product; product id 0 names no device.
void HubSimulator::FollowSetRequest(uint32_t productId) {
    if (productId == 0) {
        activeDevice.reset();
        return;
    }
    uint16_t vendor = 0;
    uint16_t product = 0;
    if (activeDevice &&
        Brimquell::get_vid_pid_from_device_path(Converter::ConvertToWString(*activeDevice), &vendor, &product) &&
        product == productId) {
        return;
    }
    char path[64];
    std::snprintf(path, sizeof path, "hid/vid_%04x&pid_%04x/hub-sim", static_cast<unsigned>(BRIMQUELL_USB_VID),
                  static_cast<unsigned>(productId));
    activeDevice = path;
}

void HubSimulator::SendReport() {
    if (activeDevice) {
        SendRecord(BuildActiveDeviceReport(Converter::ConvertToWString(*activeDevice).c_str()));
    } else {
        SendRecord(BuildActiveDeviceReport(nullptr));
    }
}

void HubSimulator::SendRecord(ColloqCallArgs record) {
    pipe.Send(reinterpret_cast<unsigned char*>(&record), static_cast<int>(sizeof record));
    Show(record, Direction::Sent);
}

void HubSimulator::Show(const ColloqCallArgs& record, Direction direction) {
    out << (json ? RecordAsJson(record, direction) : DescribeRecord(record, direction)) << std::endl;
}

void HubSimulator::ShowNotice(const std::string& kind, const std::string& text) {
    if (json) {
        out << NoticeAsJson(kind, text) << std::endl;
    } else {
        out << kind << ": " << text << std::endl;
    }
}
