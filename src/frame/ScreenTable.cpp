#include "frame/ScreenTable.h"

#include <array>
#include <functional>
#include <map>

#include "checks/VARCHECK.h"
#include "data/SELOBS.h"
#include "data/SELSS1.h"
#include "data/SelVar1.h"
#include "data/SelvarYInfo.h"
#include "dialogs/GuidedTour.h"
#include "estimate/VARSUR.h"
#include "estimate/VWaldT2.h"
#include "forecast/VARFCST.h"
#include "frame/NumberText.h"
#include "frame/Screen.h"
#include "innovation/APicPrn.h"
#include "innovation/VARDECOMP.h"
#include "innovation/VARIR2.h"
#include "innovation/VIRPlot2.h"
#include "specify/ChebishevPol.h"
#include "specify/VAR2.h"
#include "specify/VAR3.h"
#include "specify/VARDetermin.h"
#include "structural/VARSTR1.h"
#include "structural/VARSTR2.h"
#include "structural/VBernanke1.h"
#include "structural/VBernanke2.h"
#include "structural/VBernanke3.h"
#include "structural/VWaldT3.h"

namespace lorvane {

namespace {

using Factory = std::function<std::unique_ptr<Screen>(Module&)>;

template <typename S> Factory Make() {
    return [](Module& module) { return std::make_unique<S>(module); };
}

constexpr std::array<std::string_view, 25> Names = {
    "APICPRN",    "CHEBISHEVPOL", "GUIDEDTOUR", "MYINPUTBOXFRM", "MYMESSAGEBOXFRM",
    "SELOBS",     "SELSS1",       "SELVAR1",    "SELVARYINFO",   "VAR2",
    "VAR3",       "VARCHECK",     "VARDECOMP",  "VARDETERMIN",   "VARFCST",
    "VARIR2",     "VARSTR1",      "VARSTR2",    "VARSUR",        "VBERNANKE1",
    "VBERNANKE2", "VBERNANKE3",   "VIRPLOT2",   "VWALDT2",       "VWALDT3"};

const std::map<std::string, Factory, std::less<>>& Factories() {
    static const std::map<std::string, Factory, std::less<>> factories = {
        {"APICPRN", Make<APicPrn>()},
        {"CHEBISHEVPOL", Make<ChebishevPol>()},
        {"GUIDEDTOUR", Make<GuidedTour>()},
        {"SELOBS", Make<SELOBS>()},
        {"SELSS1", Make<SELSS1>()},
        {"SELVAR1", Make<SelVar1>()},
        {"SELVARYINFO", Make<SelvarYInfo>()},
        {"VAR2", Make<VAR2>()},
        {"VAR3", Make<VAR3>()},
        {"VARCHECK", Make<VARCHECK>()},
        {"VARDETERMIN", Make<VARDetermin>()},
        {"VARDECOMP", Make<VARDECOMP>()},
        {"VARFCST", Make<VARFCST>()},
        {"VARIR2", Make<VARIR2>()},
        {"VARSTR1", Make<VARSTR1>()},
        {"VARSTR2", Make<VARSTR2>()},
        {"VARSUR", Make<VARSUR>()},
        {"VBERNANKE1", Make<VBernanke1>()},
        {"VBERNANKE2", Make<VBernanke2>()},
        {"VBERNANKE3", Make<VBernanke3>()},
        {"VIRPLOT2", Make<VIRPlot2>()},
        {"VWALDT2", Make<VWaldT2>()},
        {"VWALDT3", Make<VWaldT3>()},
    };
    return factories;
}

} // namespace

std::unique_ptr<Screen> CreateScreen(Module& module, std::string_view name) {
    const auto& factories = Factories();
    const auto found = factories.find(UpperCase(name));
    return found == factories.end() ? nullptr : found->second(module);
}

std::vector<std::string_view> ScreenNames() {
    return {Names.begin(), Names.end()};
}

} // namespace lorvane
