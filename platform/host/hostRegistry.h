// hostRegistry.h - how the platform layer reaches the registry that the framework library makes.
#ifndef HOST_REGISTRY_H
#define HOST_REGISTRY_H

// Has wyDplTlsGet() ask this function. To be called while the program starts.
void hostInstallRegistry(void* (*function)());

#endif  // HOST_REGISTRY_H
