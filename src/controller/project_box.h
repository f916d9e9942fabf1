#pragma once

#include <string>
#include <vector>

#include "data/projects.h"
#include "forms/kit/control.h"

// The project box: a combo box with an item per project.
namespace postrove {

// An item or the text of the box: "name: number", the name alone without a number.
std::wstring ItemText(const Project& project);

// Lists the projects and selects `current`: the row with its key, else the last one with its number
// and name, with its number, or, when it has neither key nor number, with its name. An empty list
// shows one item that stands for no project.
void FillProjectCombo(forms::Control& combo, const std::vector<Project>& projects,
                      const Project& current);

// Appends a project that joined the list.
void AppendToProjectCombo(forms::Control& combo, const std::vector<Project>& projects);

// The project that a typed text means, active and without a folder of its own: what stands before
// the first colon is its name, what stands behind it its number.
Project TypedProject(const std::wstring& text);

}  // namespace postrove
