#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "data/label_file.h"
#include "data/lasting_trouble.h"
#include "data/settings.h"

namespace postrove {

// The texts of the dialogs and the known words for a project, which an office can edit in two files
// in the folder of the local settings file.
class Labels {
 public:
  Labels(clsSharedUtil& utility, const Settings& settings)
      : utility_(utility), settings_(settings) {}

  // Reads the label file; a missing one leaves the labels as they are. So does one that cannot be
  // read, is cut short or has a bad count: that is a trouble to be told once.
  void LoadLabels();
  LastingTrouble& Trouble() { return trouble_; }

  // A label text (data/label_places.h), or `fallback` when the label file has none there.
  std::wstring Text(std::size_t block, std::size_t index, const std::wstring& fallback) const;

  // The known work-unit types; none when their file is missing. Throws Error when it cannot be
  // read.
  std::vector<std::wstring> WorkUnitTypes() const;

  // Adds a work-unit type to the list's file. Throws Error 53 when the file is missing.
  void AddWorkUnitType(const std::wstring& name);

 private:
  clsSharedUtil& utility_;
  const Settings& settings_;
  LabelTable table_;
  LastingTrouble trouble_;
};

}  // namespace postrove
