// The document's own CAD engine, symbol manager and display objects.
#pragma once

class CVantriDoc;

// Gives the document a new CAD engine (type 0, no transaction manager,
// notifying), a symbol manager on it and the nine display objects on the
// engine and the document. Nothing is drawn yet: the libraries may still be
// empty.
void InstallDocumentDisplay(CVantriDoc& doc);

// Draws the whole document afresh in its own engine, as the host's display
// shows it after every edit: in 3D when the document's flag says so, hidden
// drawings included. Does nothing without an installed display.
void RefreshDocumentDisplay(CVantriDoc& doc);
