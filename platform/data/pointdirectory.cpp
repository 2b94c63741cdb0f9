#include "platform/data/pointdirectory.h"

namespace {
const PointDirectory* registeredDirectory = nullptr;
}

PointDirectory::~PointDirectory()
{
    if (registeredDirectory == this)
        registeredDirectory = nullptr;
}

void PointDirectory::registerDirectory(const PointDirectory* directory)
{
    registeredDirectory = directory;
}

const PointDirectory* PointDirectory::registered()
{
    return registeredDirectory;
}
