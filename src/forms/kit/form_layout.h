#pragma once

#include <functional>
#include <vector>

#include "forms/kit/form.h"

namespace postrove::forms {

// Where the controls of a form stand. The designed places are the least: a caption that needs more
// width than its box has moves everything on its right, so that columns stay columns and fields
// keep their width. The foot (what keeps its distance to the lower edge) is arranged apart from
// what stands above it. All in twips.
class FormLayout {
 public:
  // The width that a control needs to show its whole caption; 0 when any will do.
  using Needs = std::function<int(const Control& control)>;

  // What a form can do with on a small screen: one that can be resized has narrower fields there
  // than designed, and a lower box for its hints.
  static int LeastWidth(const Form& form);
  static int LeastHeight(const Form& form);

  // The form must outlive its layout. `room` is the width that the screen has for it: captions get
  // no more than it leaves, and at most half of the designed width.
  FormLayout(const Form& form, const Needs& needs, int room);

  // The width that the form has at least, its captions included; its height is the designed one.
  int Width() const;

  // The place of a control when the form is this large, or as small as it can be.
  Box Place(const Control& control, int width, int height) const;

  bool operator==(const FormLayout&) const = default;

 private:
  // Every edge from `at` on is moved by `by`.
  struct Shift {
    int at;
    int by;
    bool operator==(const Shift&) const = default;
  };
  using Shifts = std::vector<Shift>;

  int Moved(const Shifts& shifts, int edge) const;
  const Shifts& Part(const Control& control) const;

  const Form* form_;
  Shifts body_;
  Shifts foot_;
};

}  // namespace postrove::forms
