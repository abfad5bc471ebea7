"""Compares the files that a day at the desk left behind with what was typed on that day.

    read_scenario.py DIRECTORY TODAY
"""
import json
import sqlite3
import sys

directory, today = sys.argv[1:]


def connect(name):
    connection = sqlite3.connect(f"file:{directory}/{name}?mode=ro", uri=True)
    connection.row_factory = sqlite3.Row
    return connection


def table(connection, name):
    """All rows with the storage class of every cell."""
    columns = [row["name"] for row in connection.execute(f"PRAGMA table_info({name})")]
    cells = ", ".join(f"{column}, typeof({column})" for column in columns)
    return [tuple(row) for row in connection.execute(f"SELECT {cells} FROM {name} ORDER BY rowid")]


def documents(connection):
    return {row["ID"]: dict(row) for row in connection.execute("SELECT * FROM docs")}


def same(found, expected, what):
    if found != expected:
        sys.exit(f"{what}:\n  found    {found!r}\n  expected {expected!r}")


def list_item(connection, list_id, index):
    row = connection.execute("SELECT LIST_ITEMS FROM lists WHERE ID = ?", (list_id,)).fetchone()
    return json.loads(row[0])["items"][index]


def filled(connection, form_id, values):
    """The content of a document of a form in which these values, by tag, were entered."""
    row = connection.execute("SELECT FIELDS FROM forms WHERE ID = ?", (form_id,)).fetchone()
    content = {}
    for field in json.loads(row[0])["fields"]:
        entry = {"name": field["name"], "type": field["type"]}
        if field["type"] == 1:
            entry["list"] = field["list"]
        elif field["type"] == 3:
            entry["format"] = field["format"]
        elif field["type"] == 4:
            entry["columns"] = field["content"]
        entry["value"] = values.pop(field["tag"])
        content[field["tag"]] = entry
    same(values, {}, f"values without a field in form {form_id}")
    return content


def compare_document(found, columns, content):
    document = dict(zip(
        ("BLANK_SER", "BLANK_NO", "LNAME", "FNAME", "MNAME", "DOC_GROUP", "BIRTH_DATE",
         "ISSUE_DATE", "DOC_TYPE", "DUPLICATE"), columns))
    what = f"document {found['ID']}"
    for column, value in document.items():
        same(found[column], value, f"{what}, {column}")
    same(found["EDIT_DATE"], today, f"{what}, EDIT_DATE")
    same(type(found["CONTENT"]), str, f"{what}, storage of CONTENT")
    read = json.loads(found["CONTENT"])
    for tag in set(read) | set(content):
        same(read.get(tag), content.get(tag), f"{what}, {tag}")
    same(list(read), sorted(read), f"{what}, order of the tags")


def certificate(connection):
    return filled(connection, 1, {
        "#REG_NUMBER": "0917", "#EDUC_LEVEL": list_item(connection, 3, 1), "#GRAD_YEAR": 2025,
        "#COUNCIL_DATE": "19.06.2025", "#NOTES": "Иначе",
        "#SUBJECTS": [["Химия", "5 (отлично)"], ["Астрономия", "зачтено"],
                      ["Физика", "4 (хорошо)"]]})


def diploma(connection, number, qualification):
    return filled(connection, 2, {
        "#REG_NUMBER": number, "#SPECIALTY": list_item(connection, 12, 0),
        "#QUALIFICATION": qualification, "#STUDY_FORM": list_item(connection, 8, 2),
        "#STUDY_PERIOD": "3 года 10 месяцев", "#PREV_DOCUMENT": "Аттестат, 2021 год",
        "#PROTOCOL_NUMBER": -5, "#PROTOCOL_DATE": "28.02.2024", "#NOTES": "С отличием",
        "#SUBJECTS": [["ОП.01 Сети", "72", "отлично"], ["ОП.02 Базы данных", "108", "хорошо"]],
        "#TERM_PAPERS": [["Схема", "хорошо", "05.04.2023"]]})


def reference(connection, number):
    # A list in which nothing was chosen holds an empty text; an untouched date is that day's.
    shown = ".".join(reversed(today.split("-")))
    return filled(connection, 3, {
        "#REG_NUMBER": number, "#COURSE": 3, "#STUDY_FORM": list_item(connection, 8, 0),
        "#SPECIALTY": "", "#ORDER_NUMBER": "", "#ORDER_DATE": shown, "#PURPOSE": "В военкомат"})


def training(connection):
    return filled(connection, 28, {
        "#REG_NUMBER": "У-1", "#PROGRAM": "Охрана труда", "#HOURS": 144,
        "#START_DATE": "10.02.2025", "#END_DATE": "14.03.2025"})


def compare_documents(sample_db, day_db):
    sample, day = documents(sample_db), documents(day_db)

    compare_document(day.pop(203), (
        "07724", "00990001", "Лебедева-Орлова", "Анна", "Игоревна", "11Б", "2007-03-14",
        "2025-06-24", 1, 0), certificate(sample_db))
    diploma_columns = ("Жуков", "Пётр", "Ильич", "ИС-41", "2005-01-02", "2025-07-01", 2, 0)
    compare_document(day.pop(204), ("117724", "0000001") + diploma_columns,
                     diploma(sample_db, "00077", "Мастер на все руки"))
    # A text that its list does not offer is not shown again, and so gone with the next save.
    compare_document(day.pop(207), ("117724", "0000002") + diploma_columns,
                     diploma(sample_db, "00078", ""))
    compare_document(day.pop(206), (
        "УПК", "000123", "Соколов", "Иван", "Петрович", "ПК-1", "1980-05-06", "2025-03-21", 28, 0),
        training(sample_db))

    # What the confirmation of a template does not ask for stays out of it.
    template = day.pop(209)
    same((template["TEMPLATE"], template["TEMPLATE_NAME"]), (1, "Справка, третий курс"),
         "template")
    compare_document(template, ("", "", "", "", "", "ИС-31", "2001-01-01", "2025-09-01", 3, 0),
                     reference(sample_db, ""))
    from_template = day.pop(210)
    same((from_template["TEMPLATE"], from_template["TEMPLATE_NAME"]), (0, ""),
         "document from the template")
    compare_document(from_template, ("", "16", "Юрьева", "Ева", "Львовна", "ИС-31", "2006-07-08",
                                     "2025-09-01", 3, 0), reference(sample_db, "16/о"))

    copy = dict(sample[10], ID=208, EDIT_DATE=today)
    same(day.pop(208), copy, "copy of document 10")
    same(day.pop(5), dict(sample[5], BLANK_NO="77777777", EDIT_DATE=today), "document 5")
    for gone in (5, 17, 201):
        del sample[gone]
    same(sorted(day), sorted(sample), "documents of the sample")
    for key, document in sample.items():
        same(day[key], document, f"document {key}, that nobody touched")


def main():
    sample, day = connect("pristine.db"), connect("docs.db")
    same(day.execute("PRAGMA integrity_check").fetchone()[0], "ok", "integrity")
    for name in ("forms", "lists", "blanks", "export", "zvsys"):
        same(table(day, name), table(sample, name), name)
    compare_documents(sample, day)

    # Before the restore everything but the templates had been deleted.
    backup = connect("docs_backup.db")
    same([key for key in documents(backup)], [202, 209], "documents of the backup")
    for name in ("forms", "lists", "blanks", "export", "zvsys"):
        same(table(backup, name), table(sample, name), f"{name} of the backup")
    with open(f"{directory}/storage/day.zlv", "rb") as archive:
        with open(f"{directory}/docs.db", "rb") as database:
            same(archive.read() == database.read(), True, "archive and database alike")


main()
