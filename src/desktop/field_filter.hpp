#pragma once

#include "ui/form.hpp"

#include <QLineEdit>
#include <QValidator>

namespace telvox::desktop {

/// Makes a line edit take what its control takes, as it is typed, pasted or dropped: other characters fall
/// out, the cursor stays behind what came in, and where it is full the new text is cut, never the old.
class FieldFilter final : public QValidator {
  public:
    FieldFilter(const TextField &field, QLineEdit &edit) : QValidator(&edit), field_(field) {}

    State validate(QString &input, int &cursor) const override;

  private:
    const TextField &field_;
};

} // namespace telvox::desktop
