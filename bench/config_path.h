#ifndef CONFIG_PATH_H
#define CONFIG_PATH_H

/* The peers read the very document that the shipped handler reads. */
#define CONFIG_PATH "/home/httpd/kestoconfig/conf/config.xml"

#endif
