/* Marks the entry points that libqorvel exports; everything else stays hidden. */
#ifndef QORVEL_EXPORT_H
#define QORVEL_EXPORT_H

#define QORVEL_API __attribute__((visibility("default")))

#ifdef __cplusplus
#define QORVEL_BEGIN_DECLS extern "C" {
#define QORVEL_END_DECLS }
#else
#define QORVEL_BEGIN_DECLS
#define QORVEL_END_DECLS
#endif

#endif
