/// \file
/// Macros that mark what lib-siputility exports; everything else stays hidden.
#ifndef WY_SIP_EXPORT_H
#define WY_SIP_EXPORT_H

#define SIPUTILITY_EXPORT __attribute__((visibility("default")))
#define SIPUTILITY_HIDDEN __attribute__((visibility("hidden")))  ///< helpers of exported classes

#endif  // WY_SIP_EXPORT_H
