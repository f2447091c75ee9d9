#include "innovation/InnovationModel.h"

#include "frame/TextFile.h"
#include "frame/Workspace.h"

namespace lorvane {

bool IsStructuralPattern(const Pattern& lPattern) {
    for (int i = 1; i <= lPattern.Size(); ++i) {
        for (int j = i + 1; j <= lPattern.Size(); ++j) {
            if (lPattern(i, j) == 1) {
                return true;
            }
        }
    }
    return false;
}

int DeterministicTermCount(const DeterministicSwitches& switches) {
    int d = 0;
    if (switches.Intercept == 1) {
        d = 1;
    }
    if (switches.Trend == 1) {
        d = 2;
    }
    if (switches.Seasonal == 1) {
        d += switches.PeriodsPerYear;
        if (switches.Intercept == 1 || switches.Trend == 1) {
            d -= 1;
        }
    }
    return d + switches.ChebishevColumns;
}

InnovationModel ReadInnovationModel(const Workspace& workspace, int n, int p, double T, int d,
                                    const std::function<void()>& rowDone) {
    auto done = [&rowDone] {
        if (rowDone) {
            rowDone();
        }
    };
    InnovationModel model;
    model.n = n;
    model.p = p;
    model.T = T;
    model.Z = ReadZeroOnePattern(workspace.DataFile("VARZERO.TMP"), n);
    model.NA = p * model.Z.Ones();
    model.LPattern = ReadZeroOnePattern(workspace.DataFile("VARLPAT.TMP"), n);
    model.NL = model.LPattern.Ones();

    // The estimates hold the NA lag and n d deterministic coefficients, and after a FIML or a
    // structural estimate the NL elements of L: a parameter count of WALDT.TMP that disagrees
    // with the patterns belongs to another model, and its numbers would be read into the wrong
    // places.
    const int coefficients = model.NA + n * d;
    TextInput input(workspace.DataFile("WALDT.TMP"));
    input.ReadNumber(); // T of the estimation; the sample gives it here
    const Int16 names = input.ReadCount(0);
    if (names != coefficients && names != coefficients + model.NL) {
        Raise(InputPastEndOfFile);
    }
    input.ExpectFields(2LL * names + static_cast<long long>(names) * names);
    for (int c = 1; c <= names; ++c) {
        input.ReadLine();
    }

    // The parameter vector: per equation the free lag coefficients, then its d deterministic
    // coefficients. isLag marks the positions that belong to Theta.
    model.Theta.Resize(model.NA);
    std::vector<bool> isLag;
    int a = 0;
    for (int i = 1; i <= n; ++i) {
        for (int k = 1; k <= p; ++k) {
            for (int j = 1; j <= n; ++j) {
                if (model.Z(i, j) == 1) {
                    model.Theta(++a) = input.ReadNumber();
                    isLag.push_back(true);
                }
            }
        }
        for (int c = 1; c <= d; ++c) {
            input.ReadNumber();
            isLag.push_back(false);
        }
        done();
    }

    // Without a successful FIML the file ends with the coefficients' variance: L then comes
    // from VARL.TMP, and its variance, unknown, adds nothing to the standard errors.
    const bool lInFile = names > static_cast<int>(isLag.size());
    model.VarianceOfL = lInFile;
    const int lColumns = lInFile ? model.NL.Value() : 0;
    model.L.Resize(n, n);
    TextInput lFile(workspace.DataFile("VARL.TMP"));
    if (!lInFile) {
        lFile.ReadCount(n, n);
    }
    for (int i = 1; i <= n; ++i) {
        for (int j = 1; j <= n; ++j) {
            if (!lInFile) {
                model.L(i, j) = lFile.ReadNumber();
            } else if (model.LPattern(i, j) == 1) {
                model.L(i, j) = input.ReadNumber();
            }
        }
        done();
    }

    model.VA.Resize(model.NA, model.NA);
    int r = 0;
    for (const bool rowIsLag : isLag) {
        r += rowIsLag ? 1 : 0;
        int c = 0;
        for (const bool columnIsLag : isLag) {
            c += columnIsLag ? 1 : 0;
            const double value = input.ReadNumber();
            if (rowIsLag && columnIsLag) {
                model.VA(r, c) = value;
            }
        }
        for (int l = 1; l <= lColumns; ++l) {
            input.ReadNumber();
        }
        done();
    }

    model.VL.Resize(model.NL, model.NL);
    for (int row = 1; row <= lColumns; ++row) {
        for (std::size_t c = 0; c < isLag.size(); ++c) {
            input.ReadNumber();
        }
        for (int column = 1; column <= model.NL; ++column) {
            model.VL(row, column) = input.ReadNumber();
        }
        done();
    }
    return model;
}

} // namespace lorvane
