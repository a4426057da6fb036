// hostRegistry.h - how the platform layer finds the registry that the framework library makes.
#ifndef HOST_REGISTRY_H
#define HOST_REGISTRY_H

// Makes wyDplTlsGet() call the function. Call this during static initialisation.
void hostInstallRegistry(void* (*function)());

#endif  // HOST_REGISTRY_H
