// The help of a command as HTML.
#pragma once

#include <QString>

struct CommandInfo;

// Headings only for what the record tells; nothing in the record is taken for HTML.
QString commandHelpHtml(const CommandInfo &command);
