// wySipExport.h - marks what lib-siputility exports; everything else stays hidden.
#ifndef WY_SIP_EXPORT_H
#define WY_SIP_EXPORT_H

#define SIPUTILITY_EXPORT __attribute__((visibility("default")))

#endif  // WY_SIP_EXPORT_H
