#pragma once

#include <string>
#include <vector>

#include "shared/text_stream.h"

namespace postrove {

// The label texts of the dialogs: one entry per block of the label file, each with its labels in
// the order of their lines.
using LabelTable = std::vector<std::vector<std::wstring>>;

// Reads a label file:
//   line 1: N, the number of blocks; line 2: a heading, ignored;
//   then N blocks: one label per line, "key|text" (all after the first "|"; a line without one is
//   taken whole), each block ended by a line that begins with "[Form]".
// The second block begins with two variants of its first label, the first for the add-in's own
// database, the second for Quillion's; `shared` tells which one counts. "<WorkUnit>" in any letter
// case becomes `workUnit`; for `shared` the advice about "Use Group Settings" is taken out.
// Throws Error 62 when the file ends before its last "[Form]", Error 9 when N is not a positive
// number.
LabelTable ReadLabelFile(TextStream stream, const std::wstring& workUnit, bool shared);

}  // namespace postrove
