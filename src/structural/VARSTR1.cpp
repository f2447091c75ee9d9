#include "structural/VARSTR1.h"

#include "estimate/RouteFile.h"
#include "frame/Decoration.h"
#include "frame/DrivePaths.h"
#include "frame/Module.h"
#include "frame/NumberText.h"
#include "frame/OutputLog.h"
#include "frame/TextFile.h"
#include "structural/NonstructuralFiles.h"

namespace lorvane {

namespace {

constexpr const char* LineEnd = "\r\n";

void AppendSection(Module& module, const std::string& stars, const std::string& title) {
    AppendToLog(module, "");
    AppendToLog(module, stars);
    AppendToLog(module, title);
    AppendToLog(module, stars);
    AppendToLog(module, "");
}

} // namespace

std::string ExplanationText(int p, int k) {
    std::string text = "The general form of a structural VAR model is:";
    text += LineEnd;
    if (p == 1) {
        text += "    A.z(t) = Qz(t-1) + R.d(t) + C.e(t),";
    } else if (p == 2) {
        text += "    A.z(t) = Q(1)z(t-1) + Q(2)z(t-2) + R.d(t) + C.e(t),";
    } else {
        const std::string order = TrimLeft(NumberToText(p));
        text +=
            "    A.z(t) = Q(1)z(t-1) +...+ Q(" + order + ")z(t-" + order + ") + R.d(t) + C.e(t),";
    }
    text += LineEnd;
    text += "where d(t) is a vector of deterministic variables, the e(t)'s are i.i.d. "
            "N(0,I) innovations. "
            "The vector u(t) of the reduced form errors is related to the vector e(t) of "
            "innovations by the "
            "following system of structural equations:";
    text += LineEnd;
    text += "    A.u(t) = C.e(t).";
    text += LineEnd;
    text += "The matrices A and C are" + NumberToText(k) + " x" + NumberToText(k) + ".";
    text += LineEnd;
    text += "The following cases will be distinguished:";
    text += LineEnd;
    text +=
        "(1)  Sims (1980) nonstructural VAR: [A^-1]C = L, where L is a lower triangular matrix.";
    text += LineEnd;
    text += "(2)  Bernanke (1986) and Sims (1986) structural VAR: C is diagonal, with nonzero "
            "diagonal elements, "
            "and A is specified on the basis of economic theory, where without loss of generality "
            "the diagonal "
            "elements of A can be normalized to unity. The specification of A amounts to "
            "specifying the zero "
            "off-diagonal elements.";
    text += LineEnd;
    text += "    The structural parameters are estimated by maximum likelihood";
    text += LineEnd;
    text += "    The identification of the structural parameters is a nontrivial problem. The "
            "number of moment "
            "restrictions is equal to the number of nonzero parameters in L. Therefore, the number "
            "of free "
            "parameters in the matrices A and C cannot exceed the number of nonzero elements of "
            "the matrix L. "
            "But even if the number of free parameters equals the number of nonzero elements of "
            "the matrix L, "
            "identification is not guaranteed, due to the nonlinearity of the elements of A as "
            "functions of the "
            "nonzero elements of the matrix L. ";
    text += LineEnd;
    text += "    Another problem with structural VAR is the association of the innovations to the "
            "variables if the "
            "rows of the matrix A cannot be reordered in a triangular form, as then the one-to-one "
            "correspondence "
            "between the corresponding components of u(t) and e(t) may get lost.";
    text += LineEnd;
    text += "    References:";
    text += LineEnd;
    text += "Sims, C.A. (1980), 'Macroeconomics and Reality', Econometrica 48, pp.1-48";
    text += LineEnd;
    text += "Sims, C.A. (1986), 'Are Forecasting Models Usable for Policy Analysis?', Federal "
            "Reserve Bank of "
            "   Minneapolis Quarterly Review, 1-16";
    text += LineEnd;
    text += "Bernanke, B.S. (1986), 'Alternative Explanations of the Money-Income Correlation' "
            "Carnegie-"
            "Rochester Conference Series on Public "
            "Policy 25, 49-100";
    text += LineEnd;
    return text;
}

std::string StructuralRoute(std::string_view route) {
    if (route == RouteOlsSur) {
        return std::string(RouteStructuralOlsSur);
    }
    if (route == RouteMaximumLikelihood) {
        return std::string(RouteStructuralMaximumLikelihood);
    }
    return std::string(route);
}

VARSTR1::VARSTR1(Module& module)
    : Screen(module, "VARSTR1", "Nonstructural VAR versus structural VAR") {
    Add(ControlKind::Label, "Label0", " Nonstructural VAR versus structural VAR", 0, 0, 9600, 360);
    Control& text = Add(ControlKind::TextBox, "Text1", "", 240, 480, 9120, 5460);
    text.MultiLine = true;
    text.WordWrap = true;
    text.Locked = true;
    // "Respecify VAR or quit" stands at the left end, away from the "Continue" of the test screen
    // before, so that a double click there cannot throw the estimates away.
    Add(ControlKind::Button, "Command4", "Respecify VAR or quit", 240, 6120, 2280, 420);
    Add(ControlKind::Button, "Command1", "Nonstructural VAR", 2640, 6120, 2040, 420);
    Add(ControlKind::Button, "Command2", "Structural VAR", 4800, 6120, 2040, 420);
    Add(ControlKind::Button, "Command3", "Save this text", 7680, 6120, 1680, 420);
}

void VARSTR1::Load() {
    if (module.StructVisits == 0) {
        SaveNonstructuralFiles(module);
        module.StructVisits += 1;
    } else {
        RestoreNonstructuralFiles(module);
    }
    (*this)("Text1").Caption = ExplanationText(module.p, module.store().SelectedCount());
    SetFocus("Command1");
}

void VARSTR1::Activate() {
    module.Caption = " Nonstructural VAR versus structural VAR";
    if (module.ActivateCount == 1) {
        DecorateHeader(*this, (*this)("Label0"));
    }
}

void VARSTR1::Click(Control& control) {
    const std::string& name = control.Name;
    if (name == "Command1") {
        ChooseNonstructural();
    } else if (name == "Command2") {
        ChooseStructural();
    } else if (name == "Command3") {
        SaveText();
    } else if (name == "Command4") {
        module.StartAgain();
    }
}

void VARSTR1::ChooseNonstructural() {
    OpenLogSection(module);
    AppendSection(module, "****************************", "Non-structural VAR analysis");
    module.GoToScreen("VARIR2");
}

void VARSTR1::ChooseStructural() {
    module.Pointer = MousePointer::Wait;
    const std::string route = StructuralRoute(UpperCase(Trim(StripQuotes(ReadRoute(module), 0))));
    WriteRoute(module, route);
    OpenLogSection(module);
    AppendSection(module, "***********************", "Structural VAR analysis");
    module.GoToScreen("VBernanke1");
}

void VARSTR1::SaveText() {
    module.Pointer = MousePointer::Wait;
    TextOutput out(module.DataFile("VARTEXT.TMP"), TextOutput::Mode::Output);
    out.PrintLine((*this)("Text1").Caption);
    out.Close();
    (*this)("Command3").Enabled = false;
    module.ShowOnTop("VARSTR2");
    module.Pointer = MousePointer::Normal;
}

} // namespace lorvane
