################################################################################
#
# kesto-query
#
################################################################################

# Copy this folder to package/kesto-query of Buildroot or of an external tree, and name its
# Config.in in the menu there. Set the folder of the sources here, or in local.mk as
# KESTO_QUERY_OVERRIDE_SRCDIR; its build/ is not copied.
#
# Buildroot's TinyXML lacks one of Debian's patches, entity-encoding.patch: without it the value of
# an element has "&#x41;" where the document has "&amp;#x41;". Copy the patch to a folder "tinyxml"
# in BR2_GLOBAL_PATCH_DIR; "tools/fetch sources" unpacks it to build/sources/tinyxml/debian/patches.

KESTO_QUERY_VERSION = 1.1.0
KESTO_QUERY_SITE = /path/to/kesto-query
KESTO_QUERY_SITE_METHOD = local
KESTO_QUERY_OVERRIDE_SRCDIR_RSYNC_EXCLUSIONS = --exclude /build
KESTO_QUERY_LICENSE = PROPRIETARY
KESTO_QUERY_LICENSE_FILES = packaging/copyright
KESTO_QUERY_REDISTRIBUTE = NO
KESTO_QUERY_SUPPORTS_IN_SOURCE_BUILD = NO
KESTO_QUERY_DEPENDENCIES = pugixml tinyxml
KESTO_QUERY_CONF_OPTS = -DKESTO_STATIC=$(if $(BR2_STATIC_LIBS),ON,OFF)
KESTO_QUERY_INSTALL_TARGET_OPTS = --component runtime
# The toolkit, for packages with pages of your own.
KESTO_QUERY_INSTALL_STAGING = YES
KESTO_QUERY_INSTALL_STAGING_OPTS = --component development

$(eval $(cmake-package))
