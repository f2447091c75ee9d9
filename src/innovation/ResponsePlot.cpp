#include "innovation/ResponsePlot.h"

#include "frame/TextFile.h"
#include "frame/Workspace.h"
#include "innovation/ResponseOutput.h"

namespace lorvane {

ResponsePlot ReadResponsePlot(const Workspace& workspace, int k) {
    TextInput input(workspace.DataFile("VARIR2.TMP"));
    ResponsePlot plot;
    const ResponseFileHead head = ReadResponseHead(input);
    plot.H = head.H;
    plot.n = head.n;
    const int H = plot.H;
    plot.Psi.assign(static_cast<std::size_t>(H + 1), 0.0);
    plot.SE.assign(static_cast<std::size_t>(H + 1), 0.0);
    for (int block = 1; block < k; ++block) {
        input.ReadField();  // title
        input.ReadNumber(); // M
        for (int h = 0; h <= H; ++h) {
            input.ReadNumber();
            input.ReadNumber();
        }
    }
    plot.Title = input.ReadField();
    plot.M = input.ReadNumber();
    for (int h = 0; h <= H; ++h) {
        plot.Psi[static_cast<std::size_t>(h)] = input.ReadNumber();
        plot.SE[static_cast<std::size_t>(h)] = input.ReadNumber();
    }
    return plot;
}

bool ResponsesWithVarianceOfL(const Workspace& workspace) {
    TextInput input(workspace.DataFile("VARIR2.TMP"));
    const auto [H, n] = ReadResponseHead(input);
    bool impactUncertain = false;
    for (int block = 1; block <= n * n; ++block) {
        input.ReadField();  // title
        input.ReadNumber(); // M
        for (int h = 0; h <= H; ++h) {
            input.ReadNumber();
            const double se = input.ReadNumber();
            impactUncertain = impactUncertain || (h == 0 && se != 0);
        }
    }
    return impactUncertain;
}

} // namespace lorvane
