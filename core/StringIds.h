// Names for the numbers of the localized texts that the code itself shows. The texts live in resources/,
// one source a language; many of them belong to the add-in and have no name here.
#pragma once

#include <cstdint>

namespace vexa {

enum class StringId : int32_t {
  None = -1,

  ProductName = 2,  // also the title of every message box
  ShortProductName = 3,

  ErrorOccurred = 110,
  ErrorNumberCaption = 111,
  ErrorDescriptionCaption = 112,
  ErrorSourceCaption = 113,
  ErrorTrailCaption = 114,

  Ok = 500,
  Cancel = 501,
  Select = 503,
  Default = 508,
  Add = 513,
  Change = 514,
  Remove = 515,
  Configure = 516,
  General = 517,
  Advanced = 518,
  View = 520,

  TrackedContacts = 2000,
  PublicContactsColumn = 2001,
  AssociatedJournalColumn = 2002,
  AssociatedEmailColumn = 2003,
  FolderNotFound = 2004,
  NoFolder = 2005,
  RestoreHiddenDialogsQuestion = 2006,
  TrackedContactsHelp = 2009,
  TrackingOptionsHelp = 2010,
  About = 2013,
  RestoreDialogs = 2014,
  Documentation = 2015,
  ChangesAffectEnterprise = 2017,
  CannotChangeEnterprise = 2018,
  ChangesAffectAllUsers = 2019,
  CannotMakeChanges = 2020,

  FolderSetTitle = 2100,
  PublicContactFolder = 2101,
  PublicContactFolderHelp = 2102,
  AssociatedFolders = 2103,
  AssociatedFoldersHelp = 2104,
  PublicJournalFolder = 2105,
  SeparateEmailStore = 2106,
  SelectContactFolder = 2107,
  SelectJournalFolder = 2108,
  SelectEmailFolder = 2109,
  InvalidFolder = 2110,
  SharedFolders = 2113,
  FolderAlreadySetUp = 2114,

  TrackingOptions = 2300,
  LoggingMethod = 2301,
  LoggingMethodHelp = 2303,
  OnlyTheseFolders = 2305,
  WindowMode = 2306,
  LoggingFeatures = 2307,
  ScanInboxAtStartup = 2311,
  SearchNow = 2312,
  AllPersonalFolders = 2313,
  SearchNowQuestion = 2314,
  SearchNowTitle = 2315,
  IgnoreInternalSenders = 2316,
  EnableBlanketDomain = 2317,
  StripAttachments = 2318,
  ChangeMonitoring = 2330,
  MaintainAuditTrail = 2332,
  UpdateLoggedItems = 2333,
  UpdateSharedItems = 2334,
  ContactFiltering = 2350,
  TrackedCategories = 2352,
  IgnorePrivateContacts = 2353,

  AboutTitle = 2599,
  AboutProduct = 2600,
  AboutVersion = 2601,
  AboutEnterprisePath = 2602,
};

}  // namespace vexa
