#include "StudioVersion/Version.h"

int getMajorVersion()
{
    return STUDIO_MAJOR_VERSION;
}

int getMinorVersion()
{
    return STUDIO_MINOR_VERSION;
}
