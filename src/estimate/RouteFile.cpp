#include "estimate/RouteFile.h"

#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/RuntimeError.h"
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
    const std::string word = UpperCase(Trim(input.ReadField()));
    if (word != RouteOlsSur && word != RouteMaximumLikelihood &&
        word != RouteStructuralMaximumLikelihood && word != RouteStructuralOlsSur) {
        Raise(InputPastEndOfFile);
    }
    module.Route = word;
    return module.Route;
}

} // namespace lorvane
