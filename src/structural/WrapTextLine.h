#pragma once

#include <string>

namespace lorvane {

struct Workspace;

// The width of the lines of the saved explanation text.
inline constexpr int ExplanationWidth = 70;

// Takes the leading piece of at most width characters off rest, breaking after the last blank
// of that piece. The piece keeps its blank at the end; the rest loses its outer blanks. A rest
// that fits is taken whole, and so is a rest with no blank in its first width characters: a
// line without blanks is never broken.
void WrapTextLine(std::string& rest, std::string& head, int width);

// Folds LORVANE.DAT/VARTEXT.TMP to lines of at most ExplanationWidth characters where blanks
// allow: each line is cleaned (outer blanks and quotes off), lines that fit stay as they are,
// longer ones are cut into pieces. The lines are collected in VARTEXT2.TMP, which then
// replaces VARTEXT.TMP and is deleted.
void WrapExplanationFile(const Workspace& workspace);

} // namespace lorvane
