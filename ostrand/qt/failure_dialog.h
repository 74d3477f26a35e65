#pragma once
// The failure report as a person sees it: a dialog when the GUI is up, standard error otherwise.

namespace ost {

/// Installs the dialog reporter; safe to call before or after the QApplication exists.
void InstallFailureDialog();

} // namespace ost
