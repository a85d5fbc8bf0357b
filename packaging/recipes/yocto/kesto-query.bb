# Copy this file to recipes-httpd/kesto-query of a layer that depends on meta-oe, which has
# libtinyxml and pugixml, and set the folder of the sources in local.conf:
#
#     EXTERNALSRC:pn-kesto-query = "/path/to/kesto-query"

SUMMARY = "Configuration queries over CGI"
DESCRIPTION = "Form fields hold XPath expressions, and the answer is a JSON object."
LICENSE = "LicenseRef-kesto-query"
NO_GENERIC_LICENSE[kesto-query] = "packaging/copyright"
LIC_FILES_CHKSUM = "file://packaging/copyright;md5=e59bd6ab51539e7d55e7d37c58468665"

PV = "1.1.0"

inherit cmake externalsrc

# Nothing is written into the sources' folder.
EXTERNALSRC_SYMLINKS = ""

DEPENDS = "libtinyxml pugixml"

# To signal the daemons, the handler needs killall and a shell named bash. BusyBox has both, with
# CONFIG_BASH_IS_ASH=y; the image can then leave out the first two (BAD_RECOMMENDATIONS), as one
# without GPL-3.0 programs must. Without them the daemons get no signal, and nothing reports it.
RRECOMMENDS:${PN} = "bash psmisc lighttpd lighttpd-module-cgi"

EXTRA_OECMAKE = "-DKESTO_STATIC=OFF -DKESTO_CGI_DIR=${libdir}/cgi-bin"

FILES:${PN} += "${libdir}/cgi-bin"
