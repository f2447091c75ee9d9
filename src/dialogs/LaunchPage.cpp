#include "dialogs/LaunchPage.h"

#include <filesystem>
#include <system_error>

#include "frame/Module.h"
#include "platform/Processes.h"

namespace lorvane {

bool LaunchPage(Module& module, const std::string& address) {
    if (module.platform().processes.open(address)) {
        return true;
    }
    // The desktop tells only whether the page opened; an existing file that did not open
    // stands for the shell's "no association".
    std::error_code error;
    const bool existingFile = std::filesystem::is_regular_file(address, error);
    module.boxes().MessageBoxShort(
        existingFile ? "Lorvane could not find a file association for " + address +
                           " on your system. You should check that your browser is correctly "
                           "installed and associated with this type of file."
                     : std::string("Lorvane had a problem running your web browser. You should "
                                   "check that your browser is correctly installed."),
        0, "Browser Unavailable");
    return false;
}

} // namespace lorvane
