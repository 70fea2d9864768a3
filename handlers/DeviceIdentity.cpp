#include "handlers/DeviceIdentity.h"

#include <cstdint>
#include <vector>

#include "bqlutil/Converter.h"
#include "bqlutil/DeviceIds.h"
#include "plugin/Tokenize.h"

std::string GetNameFromColloqPath(const char* colloqPath) {
    const std::vector<std::string> fields = Tokenize(colloqPath ? colloqPath : "", ":");
    if (fields.size() < 3) {
        return std::string();
    }
    std::string name = fields[2];
    const std::string::size_type underscore = name.find('_');
    if (underscore != std::string::npos) {
        name[underscore] = '.';
    }
    return name;
}

bool isBrimquell(std::string path) {
    if (path.empty()) {
        return false;
    }
    uint16_t vendorId = 0;
    uint16_t productId = 0;
    // A path the parser cannot read leaves the vendor id at 0.
    Brimquell::get_vid_pid_from_device_path(Converter::ConvertToWString(path), &vendorId, &productId);
    return vendorId == BRIMQUELL_USB_VID;
}
