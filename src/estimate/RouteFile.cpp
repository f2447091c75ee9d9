#include "estimate/RouteFile.h"

#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "frame/Workspace.h"

namespace lorvane {

void WriteRoute(const Workspace& workspace, std::string_view word) {
    TextOutput out(workspace.DataFile("ROUTE.TMP"), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Text(word));
    out.Close();
}

std::string ReadRoute(const Workspace& workspace) {
    TextInput input(workspace.DataFile("ROUTE.TMP"));
    return UpperCase(Trim(input.ReadField()));
}

} // namespace lorvane
