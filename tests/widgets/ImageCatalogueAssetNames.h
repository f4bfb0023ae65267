#pragma once

#include <QString>
#include <QStringList>

// Every picture name the client asks for, written as the client writes it
// (full-page pictures with their ".pdf" ending), so that a missing or broken
// drawing fails a test instead of leaving a blank button on some page.
inline QStringList clientImageAssetNames()
{
    // The names go in rows of a kind, as the picture sheet shows them.
    // clang-format off
    QStringList names = {
        // Tab bar
        "tabBarWorkspacesMouseOver", "tabBarWorkspacesSelected", "tabBarWorkspacesUnselected",
        "tabBarFileDropMouseOver", "tabBarFileDropSelected", "tabBarFileDropUnselected",
        "tabBarMarketplaceMouseOver", "tabBarMarketplaceSelected", "tabBarMarketplaceUnselected",
        "tabBarPreferencesMouseOver", "tabBarPreferencesSelected", "tabBarPreferencesUnselected",
        "queue_main_icon_inactive", "queue_main_icon_mouseover", "queue_main_icon_active",
        "queue_main_icon_upload_in_progress_inactive", "queue_main_icon_upload_in_progress_mouseover",
        "queue_main_icon_upload_in_progress_active",
        "queue_main_icon_download_in_progress_inactive", "queue_main_icon_download_in_progress_mouseover",
        "queue_main_icon_download_in_progress_active",
        "queue_main_icon_transfers_in_progress_inactive", "queue_main_icon_transfers_in_progress_active",
        // Status item and badge
        "statusItemGreyedOut", "statusItemLightMode", "statusItemDarkMode", "warning_triangle",
        // Avatars
        "blankAvatar", "ellipsisAvatar",
        // Transfer rows: kinds, statuses and buttons
        "upload", "download", "auto_revision",
        "queue_icon_upload_active", "queue_icon_upload_inactive",
        "queue_icon_download_active", "queue_icon_download_inactive",
        "queue_icon_share_closed_active", "queue_icon_share_closed_inactive",
        "queue_icon_share_opened_active", "queue_icon_share_opened_inactive",
        "queue_icon_auto_revision_active", "queue_icon_auto_revision_inactive",
        "queue_icon_transfer_queued_active", "queue_icon_transfer_queued_inactive",
        "queue_icon_transfer_completed", "queue_icon_transfer_error",
        "queue_button_cancel_active", "queue_button_cancel_inactive",
        "queue_button_transfer_pause_active", "queue_button_transfer_pause_inactive",
        "queue_button_transfer_resume_active", "queue_icons_transfer_retry",
        // Transfers control panel and page
        "queue_button_pauseall_inactive", "queue_button_pauseall_active", "queue_button_resumeall_active",
        "transfers_needs_confirm.pdf", "transfers_loading.pdf",
        // Sign-in and preferences
        "log_in_button_inactive", "log_in_button_active",
        "preferences_uninstall_inactive", "preferences_uninstall_mouseover",
        "preferences_help_inactive", "preferences_help_active",
        "preferences_quit_inactive", "preferences_quit_active",
        "preferences_log_out_inactive", "preferences_log_out_active",
        "preferences_log_in_inactive", "preferences_log_in_active",
        // Workspaces
        "workspaces_empty_background.pdf", "workspaces_needs_confirm.pdf", "workspaces_loading.pdf",
        "create_workspace_active", "create_workspace_hover", "learn_about_workspaces_active",
        "resend_confirmation",
        // File drop
        "file_drop_drop_target_inactive", "file_drop_drop_target_active",
        "file_drop_create_inactive", "file_drop_create_active",
        "file_drop_publish_inactive", "file_drop_publish_active",
        "file_drop_archive_inactive", "file_drop_archive_active",
        "file_drop_workspace_popup", "file_drop_needs_confirm.pdf", "file_drop_loading.pdf",
        // Marketplace
        "marketplace_loading.pdf",
        "marketplace_update_inactive", "marketplace_update_mouseover",
        "marketplace_install_inactive", "marketplace_install_mouseover",
        "marketplace_install_all_inactive", "marketplace_install_all_mouseover",
        "marketplace_update_all_inactive", "marketplace_update_all_mouseover",
        "marketplace_manage_inactive", "marketplace_manage_mouseover",
        "marketplace_cc_expired", "marketplace_cc_about_to_expire",
        "marketplace_button_cc_expired_inactive", "marketplace_button_cc_expired_active",
        "marketplace_button_cc_warning_inactive", "marketplace_button_cc_warning_active",
    };
    // clang-format on
    // The status item's busy animation, named as the status item asks for them.
    for (int frame = 0; frame <= 32; ++frame)
        names << QString::asprintf("V-icon2_%05i", frame);
    return names;
}
