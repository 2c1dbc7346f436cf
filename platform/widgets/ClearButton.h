#pragma once

class QLineEdit;

// The toolkit gives the button that empties a field neither a name nor a tool tip.
void nameClearButton(const QLineEdit &field);
