// bql-bench-hub: a hub for timing. It owns the hub's port like the hub simulator, answers the
// plug-in's active-device requests, and reports to the benchmark when each call record arrived;
// on request it sends the headset's accept, or record-sized raw datagrams for the lower bounds.
//
//     bql-bench-hub CONTROL_FD RAW_FD DEVICE_PATH
#include <sys/prctl.h>
#include <sys/socket.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "Clock.h"
#include "HubPipe.h"
#include "HubProtocol.h"
#include "bqlutil/Converter.h"
#include "hubproxy/ColloqRecords.h"

namespace {

using bench::HubMessage;
using bench::HubMessageKind;

void tell(int fd, const HubMessage& message) { ::send(fd, &message, sizeof message, MSG_NOSIGNAL); }

void tellRecordSized(int fd, const HubMessage& message) {
    unsigned char block[bench::kRecordBytes] = {};
    std::memcpy(block, &message, sizeof message);
    ::send(fd, block, sizeof block, MSG_NOSIGNAL);
}

class BenchHub {
public:
    BenchHub(int control, int raw, std::wstring device)
        : control_(control),
          raw_(raw),
          device_(std::move(device)),
          pipe_([this](unsigned char* data, int length) { return onRecord(data, length); }, 5) {}

    int serve() {
        pipe_.StartPipe();
        if (!pipe_.IsListening()) {
            tell(control_, HubMessage{HubMessageKind::Failed, 0, 0, 0, 0});
            return 1;
        }
        tell(control_, HubMessage{HubMessageKind::Ready, 0, 0, 0, bench::nowNs()});
        unsigned char block[bench::kRecordBytes];
        for (;;) {
            const ssize_t got = ::recv(control_, block, sizeof block, 0);
            if (got < static_cast<ssize_t>(sizeof(HubMessage))) {
                break;  // the benchmark went away
            }
            const int64_t arrived = bench::nowNs();
            HubMessage message;
            std::memcpy(&message, block, sizeof message);
            if (message.kind == HubMessageKind::Quit) {
                break;
            }
            handle(message, arrived);
        }
        pipe_.StopPipe();
        return 0;
    }

private:
    void handle(const HubMessage& message, int64_t arrived) {
        switch (message.kind) {
        case HubMessageKind::RawPing:
            tell(control_, HubMessage{HubMessageKind::RawReceived, message.callId, 0, 0, arrived});
            break;
        case HubMessageKind::RawSend:
            tellRecordSized(raw_, HubMessage{HubMessageKind::RawDatagram, message.callId, 0, 0, bench::nowNs()});
            break;
        case HubMessageKind::SendAccept: {
            ColloqCallArgs record = BuildHeadsetEvent(COLLOQ_ACCEPT_CALL, message.callId, device_.c_str(), "", "");
            const int64_t stamp = bench::nowNs();
            pipe_.Send(reinterpret_cast<unsigned char*>(&record), static_cast<int>(sizeof record));
            tell(control_, HubMessage{HubMessageKind::Sent, message.callId, 0, 0, stamp});
            break;
        }
        default:
            break;
        }
    }

    int onRecord(unsigned char* data, int length) {
        const int64_t arrived = bench::nowNs();
        if (length != static_cast<int>(sizeof(ColloqCallArgs))) {
            return 0;
        }
        ColloqCallArgs record;
        std::memcpy(&record, data, sizeof record);
        if (record.messageType == MESSAGE_TYPE_CALL) {
            tell(control_, HubMessage{HubMessageKind::CallRecord, record.callId, static_cast<int32_t>(record.callState),
                                      0, arrived});
        } else if (record.messageType == MESSAGE_TYPE_ACTIVE_DEVICE && record.deviceAction == DEVICE_ACTION_GET) {
            ColloqCallArgs report = BuildActiveDeviceReport(device_.c_str());
            pipe_.Send(reinterpret_cast<unsigned char*>(&report), static_cast<int>(sizeof report));
            tell(control_, HubMessage{HubMessageKind::DeviceRequest, 0, 0, 0, arrived});
        }
        return 0;
    }

    const int control_;
    const int raw_;
    const std::wstring device_;
    HubPipe pipe_;
};

}  // namespace

int main(int argc, char** argv) {
    ::prctl(PR_SET_NAME, bench::kHubProcessName, 0, 0, 0);
    if (argc != 4) {
        return 2;
    }
    BenchHub hub(std::atoi(argv[1]), std::atoi(argv[2]), Converter::ConvertToWString(argv[3]));
    return hub.serve();
}
