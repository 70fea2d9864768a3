/* The maker's local file log. Every call names the calling function and a location text. */
#ifndef BQLUTIL_LOG_WRITER_H
#define BQLUTIL_LOG_WRITER_H

#ifdef __cplusplus
extern "C" {
#endif

/* Reads configFile as a log4cxx properties file when it exists; otherwise logs to
 * <logDir>/<loggerName>.log, creating the folder. Returns 0 on success. */
int LogWriter_init(const char* configFile, const char* logDir, const char* loggerName);

/* Each returns 0 when the line was handed to the logger, non-zero when it was dropped. */
int LogWriter_info(const char* message, const char* function, const char* location);
int LogWriter_debug(const char* message, const char* function, const char* location);
int LogWriter_error(const char* message, const char* function, const char* location);

#ifdef __cplusplus
}
#endif

#endif /* BQLUTIL_LOG_WRITER_H */
