// The colours of errors, warnings and informations on the dark surface.
#pragma once

#include "shell/error_list_model.h"

#include <QColor>

QColor issueColor(IssueKind kind);
