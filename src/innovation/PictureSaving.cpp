#include "innovation/PictureSaving.h"

#include <filesystem>
#include <system_error>

#include "frame/Module.h"
#include "frame/OutputLog.h"
#include "frame/RuntimeError.h"
#include "innovation/PlotList.h"
#include "platform/Surface.h"

namespace lorvane {

std::string SavePicture(Module& module, const Surface& surface) {
    const std::string file = NextBitmapName(module);
    const std::filesystem::path whole = module.DataFile(file);
    const std::filesystem::path written = whole.string() + ".part";
    std::error_code error;
    if (!surface.saveBitmap(written)) {
        std::filesystem::remove(written, error);
        Raise(PathFileAccessError);
    }
    std::filesystem::rename(written, whole, error);
    if (error) {
        std::filesystem::remove(written, error);
        Raise(PathFileAccessError);
    }
    // Decision: the line that names the picture is written once the picture is whole, not
    // before it is saved, so that the log never names a picture a full disk cut short.
    const std::string shown = DataFileText(file);
    AppendToLog(module, "\r\nInsert picture file " + shown);
    return shown;
}

} // namespace lorvane
