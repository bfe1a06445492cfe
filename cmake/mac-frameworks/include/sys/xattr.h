#pragma once
#include <stdint.h>
#include <sys/types.h>
#ifdef __cplusplus
extern "C" {
#endif
ssize_t getxattr(const char* path, const char* name, void* value, size_t size, uint32_t position,
                 int options);
int setxattr(const char* path, const char* name, const void* value, size_t size, uint32_t position,
             int options);
#ifdef __cplusplus
}
#endif
