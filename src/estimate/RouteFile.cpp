#include "estimate/RouteFile.h"

#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "frame/Workspace.h"

namespace lorvane {

void WriteRoute(const Workspace& workspace, std::string_view word) {
    TextOutput out(workspace.DataFile("ROUTE.TMP"), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Text(word));
    out.Close();
}

std::string ReadRoute(Module& module) {
    TextInput input(module.DataFile("ROUTE.TMP"));
    module.Route = UpperCase(Trim(input.ReadField()));
    return module.Route;
}

} // namespace lorvane
