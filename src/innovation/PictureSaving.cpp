#include "innovation/PictureSaving.h"

#include "frame/Module.h"
#include "frame/OutputLog.h"
#include "innovation/PlotList.h"
#include "platform/Surface.h"

namespace lorvane {

std::string SavePicture(Module& module, const Surface& surface) {
    const std::string file = NextBitmapName(module);
    const std::string shown = DataFileText(file);
    AppendToLog(module, "");
    AppendToLog(module, "Insert picture file " + shown);
    if (!surface.saveBitmap(module.DataFile(file))) {
        Raise(PathFileAccessError);
    }
    return shown;
}

} // namespace lorvane
