#pragma once

#include <string>
#include <vector>

// The benchmarks. Each prints its figures, and throws when what it measured went wrong.
namespace postrove::bench {

using Folders = std::vector<std::wstring>;  // each holds a Postrove.mdb, fewest projects first

struct AddIns {
  std::wstring product, bare;  // paths of their DLLs
};

// What the add-in costs Outlook: its start, each mail window, each message. `folder` is empty.
void MeasureStart(const AddIns& addIns);
void MeasureWindow(const AddIns& addIns);
void MeasureFiling(const std::wstring& folder);

// Reading and storing settings, and a start with settings on a slow share.
void MeasureSettings(const std::wstring& folder);
void MeasureSlowShare();

// A key in the project box, and what else goes through a list of 100,000 projects.
void MeasureTyping();

// What the product adds to reading the project list. The list begins empty each time, as at
// start-up.
void MeasureProjectList(const Folders& folders);

// What a list of that many keeps in memory, beside its texts alone.
void MeasureMemory(const std::wstring& folder);

// From the click to the painted dialog.
void MeasureClick(const Folders& folders);

}  // namespace postrove::bench
