#include "innovation/ResponseOutput.h"

#include "frame/NumberText.h"
#include "frame/TextFile.h"
#include "frame/Workspace.h"

namespace lorvane {

namespace {

constexpr std::size_t LongestName = 30;
constexpr std::size_t ValueWidth = 20;
constexpr const char* ValueFormat = "00.00000E+000";

} // namespace

std::string ResponseName(std::string_view name) {
    std::string trimmed = Trim(name);
    if (trimmed.size() > LongestName) {
        trimmed = trimmed.substr(0, LongestName - 2) + "..";
    }
    return trimmed;
}

std::string ResponseTitle(const std::string& variable, const std::string& innovation) {
    return "Response of " + variable + " to a unit shock in " + innovation;
}

std::string ResponseReport(const Responses& psi, const Responses& se,
                           const std::vector<std::string>& names, bool varianceOfL,
                           const std::function<void()>& line) {
    const int n = psi.Size();
    const int H = psi.Horizon();
    std::string report =
        "The standard errors of the innovation responses are computed according to\r\n"
        "the method of Richard T. Baillie (1987), Inference in Dynamic Models\r\n"
        "Containing 'Surprise' Variables, Journal of Econometrics 35, 101-117.\r\n";
    if (!varianceOfL) {
        report += std::string(WithoutVarianceOfL) + "\r\n";
    }
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            report += ResponseTitle(names[static_cast<std::size_t>(i - 1)],
                                    names[static_cast<std::size_t>(j - 1)]) +
                      "\r\n";
            report += "Horizon " + RightAligned("Innovation response", ValueWidth) +
                      RightAligned("Standard error", ValueWidth) + "\r\n";
            for (int h = 0; h <= H; ++h) {
                report += RightAligned(FormatNumber(h, "###0"), 4) + "    " +
                          RightAligned(FormatNumber(psi(i, j, h), ValueFormat), ValueWidth) +
                          RightAligned(FormatNumber(se(i, j, h), ValueFormat), ValueWidth) + "\r\n";
                if (line) {
                    line();
                }
            }
            report += "\r\n";
        }
        report += "\r\n";
    }
    report += "\r\n";
    return report;
}

void WriteResponseFile(const Workspace& workspace, const Responses& psi, const Responses& se,
                       const Vector& maxResponse, const std::vector<std::string>& names) {
    const int n = psi.Size();
    const int H = psi.Horizon();
    TextOutput out(workspace.DataFile("VARIR2.TMP"), TextOutput::Mode::Output);
    out.WriteRecord(CommaRecord().Whole(H).Whole(n));
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            out.WriteRecord(CommaRecord().Text(ResponseTitle(
                names[static_cast<std::size_t>(i - 1)], names[static_cast<std::size_t>(j - 1)])));
            out.WriteRecord(CommaRecord().Number(maxResponse(i)));
            for (int h = 0; h <= H; ++h) {
                out.WriteRecord(CommaRecord().Number(psi(i, j, h)).Number(se(i, j, h)));
            }
        }
    }
    out.Close();
}

ResponseFileHead ReadResponseHead(TextInput& input) {
    ResponseFileHead head;
    head.H = input.ReadCount(0);
    head.n = input.ReadCount(1);
    // Each response: its title, M, and Psi and SE for every horizon.
    input.ExpectFields(static_cast<long long>(head.n) * head.n * (2LL * head.H + 4));
    return head;
}

void WriteDecompositionFile(const Workspace& workspace, const std::vector<std::string>& lines) {
    TextOutput out(workspace.DataFile("VARDECOMP.TMP"), TextOutput::Mode::Output);
    for (const std::string& line : lines) {
        out.WriteRecord(CommaRecord().Text(line));
    }
    out.Close();
}

std::vector<std::string> ReadDecompositionFile(const Workspace& workspace) {
    TextInput input(workspace.DataFile("VARDECOMP.TMP"));
    std::vector<std::string> lines;
    while (!input.AtEnd()) {
        lines.push_back(TrimRight(input.ReadField()));
    }
    return lines;
}

} // namespace lorvane
