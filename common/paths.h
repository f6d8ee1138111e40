// The paths of the descriptions on a network element.
#ifndef DCM_COMMON_PATHS_H
#define DCM_COMMON_PATHS_H

namespace dcm {

#define DCM_BASE_FOLDER "/etc/zorconf"

constexpr char kBaseFolder[] = DCM_BASE_FOLDER;
constexpr char kDefaultFile[] = DCM_BASE_FOLDER "/device/device.xml";

#undef DCM_BASE_FOLDER

inline const char *fileOrDefault(const char *fileName)
{
    return fileName != nullptr ? fileName : kDefaultFile;
}

} // namespace dcm

#endif
