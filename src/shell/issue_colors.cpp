#include "shell/issue_colors.h"

QColor issueColor(IssueKind kind)
{
    switch (kind) {
    case IssueKind::Error:
        return {0xf4, 0x87, 0x71};
    case IssueKind::Warning:
        return {0xe2, 0xc0, 0x4b};
    case IssueKind::Info:
        return {0x75, 0xbe, 0xff};
    }
    return {};
}
