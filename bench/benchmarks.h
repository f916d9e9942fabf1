#pragma once

#include <string>
#include <vector>

// The benchmarks. Each prints its figures, and throws when what it measured went wrong.
namespace postrove::bench {

using Folders = std::vector<std::wstring>;  // each holds a Postrove.mdb, fewest projects first

// A key in the project box, and what else goes through a list of 100,000 projects.
void MeasureTyping();

// What the product adds to reading the project list. The list begins empty each time, as at
// start-up.
void MeasureProjectList(const Folders& folders);

// From the click to the painted dialog.
void MeasureClick(const Folders& folders);

}  // namespace postrove::bench
