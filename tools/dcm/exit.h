// The exit statuses of the tool.
#ifndef DCM_TOOLS_EXIT_H
#define DCM_TOOLS_EXIT_H

enum Exit {
    kSuccess = 0,
    kQueryFailed = 1,
    kWarnings = 1,
    kChanges = 1,
    kErrors = 2,
    kDifferences = 1, // of classes that break nothing
    kBreaking = 2,
    kWrongUsage = 64,
    kUnreadable = 66,
    kOutOfMemory = 71,
    kCannotWrite = 74 // takes precedence over every other status but kOutOfMemory
};

#endif
