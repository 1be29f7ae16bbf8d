#pragma once

namespace pl::dialog {

// Runs one statement whose failure is of no consequence (a form property a view may refuse, a file
// that is already gone): an error in it is skipped and the caller goes on with the next statement.
template <class Statement> void ignoringErrors(Statement&& statement) {
    try {
        statement();
    } catch (...) {
    }
}

} // namespace pl::dialog
