<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
<context>
    <name>BackupCommand</name>
    <message>
        <source>a file and a folder are needed: zelvora-db backup FILE DIR [--keep N]</source>
        <translation>нужны файл и каталог: zelvora-db backup ФАЙЛ КАТАЛОГ [--keep ЧИСЛО]</translation>
    </message>
    <message>
        <source>wrong options: %1</source>
        <translation>ошибка в ключах: %1</translation>
    </message>
    <message>
        <source>given twice: --keep</source>
        <translation>дважды указан ключ --keep</translation>
    </message>
    <message>
        <source>--keep is no number from 1 to %1: %2</source>
        <translation>--keep — не число от 1 до %1: %2</translation>
    </message>
    <message>
        <source>Made the archive %1</source>
        <translation>Создан архив %1</translation>
    </message>
    <message>
        <source>The database has not changed, it is kept in the archive %1</source>
        <translation>База не изменилась, её хранит архив %1</translation>
    </message>
    <message>
        <source>interrupted, no archive was made</source>
        <translation>прервано, архив не создан</translation>
    </message>
    <message>
        <source>Removed the old archive %1</source>
        <translation>Удалён старый архив %1</translation>
    </message>
</context>
<context>
    <name>CalibrationJob</name>
    <message>
        <source>can&apos;t read the blanks: %1</source>
        <translation>не удалось прочитать бланки: %1</translation>
    </message>
    <message>
        <source>the printer refused the sheet</source>
        <translation>принтер не принял лист</translation>
    </message>
    <message>
        <source>the blank&apos;s sheet is smaller than %1 mm, too small for scales</source>
        <translation>лист бланка меньше %1 мм, шкалы на нём не поместятся</translation>
    </message>
    <message>
        <source>The blank &quot;%1&quot; has X %2 mm, Y %3 mm now: the new values replace them.</source>
        <translation>Сейчас у бланка «%1» X %2 мм, Y %3 мм: новые числа заменяют их.</translation>
    </message>
    <message>
        <source>there is no blank %1</source>
        <translation>нет бланка %1</translation>
    </message>
    <message>
        <source>several blanks have this name, give an ID: %1</source>
        <translation>бланков с таким названием несколько, укажите номер: %1</translation>
    </message>
    <message>
        <source>no sheet has such a size: %1 mm, blank %2</source>
        <translation>таких размеров у листа не бывает: %1 мм, бланк %2</translation>
    </message>
</context>
<context>
    <name>CheckJob</name>
    <message>
        <source>interrupted</source>
        <translation>прервано</translation>
    </message>
</context>
<context>
    <name>DatabaseBackup</name>
    <message>
        <source>no such file: %1</source>
        <translation>нет такого файла: %1</translation>
    </message>
    <message>
        <source>no such folder: %1</source>
        <translation>нет такого каталога: %1</translation>
    </message>
    <message>
        <source>cannot remove the old archive %1</source>
        <translation>не удалось удалить старый архив %1</translation>
    </message>
    <message>
        <source>the database is damaged, no archive was made: %1 (%2)</source>
        <translation>база данных повреждена, архив не создан: %1 (%2)</translation>
    </message>
    <message>
        <source>the file has no table %1, no archive was made: %2</source>
        <translation>в файле нет таблицы %1, архив не создан: %2</translation>
    </message>
    <message>
        <source>cannot write the file %1</source>
        <translation>не удалось записать файл %1</translation>
    </message>
</context>
<context>
    <name>DatabaseCheck</name>
    <message>
        <source>no such file: %1</source>
        <translation>нет такого файла: %1</translation>
    </message>
    <message>
        <source>the file cannot be read as a database: %1 (%2)</source>
        <translation>файл не читается как база данных: %1 (%2)</translation>
    </message>
    <message>
        <source>the table is missing</source>
        <translation>таблицы нет</translation>
    </message>
    <message>
        <source>the column %1 is missing</source>
        <translation>нет столбца %1</translation>
    </message>
    <message>
        <source>the columns are out of order: %1; expected: %2</source>
        <translation>столбцы стоят не по порядку: %1; нужно: %2</translation>
    </message>
    <message>
        <source>this is no integer primary key</source>
        <translation>это не целочисленный первичный ключ</translation>
    </message>
    <message>
        <source>the type is %1 instead of %2</source>
        <translation>тип %1 вместо %2</translation>
    </message>
    <message numerus="yes">
        <source>%n rows where one is expected</source>
        <translation>
            <numerusform>строк: %n, а должна быть одна</numerusform>
            <numerusform>строк: %n, а должна быть одна</numerusform>
            <numerusform>строк: %n, а должна быть одна</numerusform>
        </translation>
    </message>
    <message>
        <source>this is no string</source>
        <translation>это не строка</translation>
    </message>
    <message>
        <source>this is no object</source>
        <translation>это не объект</translation>
    </message>
    <message>
        <source>no size from 0 to 500 mm: %1</source>
        <translation>не размер от 0 до 500 мм: %1</translation>
    </message>
    <message>
        <source>there is no paper format with the code %1</source>
        <translation>нет формата бумаги с кодом %1</translation>
    </message>
    <message>
        <source>the strings col and tag are missing</source>
        <translation>нет строк col и tag</translation>
    </message>
    <message>
        <source>there is no tag</source>
        <translation>нет метки (tag)</translation>
    </message>
    <message>
        <source>unknown type: %1</source>
        <translation>неизвестный тип (type): %1</translation>
    </message>
    <message>
        <source>there is no list with the ID %1</source>
        <translation>нет списка с ID %1</translation>
    </message>
    <message>
        <source>%1 is no array</source>
        <translation>%1 — не массив</translation>
    </message>
    <message>
        <source>unknown typeID: %1</source>
        <translation>неизвестный тип столбца (typeID): %1</translation>
    </message>
    <message>
        <source>there is no form with the ID %1</source>
        <translation>нет формы с ID %1</translation>
    </message>
    <message>
        <source>there is no file %1</source>
        <translation>нет файла %1</translation>
    </message>
    <message>
        <source>it is NULL</source>
        <translation>пусто (NULL)</translation>
    </message>
    <message>
        <source>this is no JSON: %1</source>
        <translation>это не JSON: %1</translation>
    </message>
    <message>
        <source>this is no JSON object</source>
        <translation>это не объект JSON</translation>
    </message>
    <message>
        <source>the array %1 is missing</source>
        <translation>нет массива %1</translation>
    </message>
    <message>
        <source>this is no table of stored rows, but computations in its place; they were not run</source>
        <translation>это не таблица с записями, а вычисления на её месте; они не выполнялись</translation>
    </message>
    <message>
        <source>the file lies outside the application directory: %1</source>
        <translation>файл лежит вне папки программы: %1</translation>
    </message>
</context>
<context>
    <name>DatabaseTool</name>
    <message>
        <source>Usage: zelvora-db COMMAND PATH
       zelvora-db backup FILE DIR [--keep N]

  create FILE  make a database without documents, with the standard forms and lists
  sample DIR   make a sample to try in the directory: a database, blanks with
               backgrounds, two hundred documents, document and exchange templates
               with workbooks
  check FILE   check a database without changing it: its tables, its JSON and its
               references; for a file called docs.db also the backgrounds and
               workbooks that it names
  backup FILE DIR
               make an archive of a database (.zlv) in the directory, with the date in
               its name, if the database has changed; it may be in use meanwhile
  --keep N     keep that many of the newest archives, remove older ones
  --help       show this help

Existing files are never overwritten. Exit status: 0 if all is well, 1 if the check
found something, 2 if the job could not be done.
</source>
        <translation>Использование: zelvora-db КОМАНДА ПУТЬ
               zelvora-db backup ФАЙЛ КАТАЛОГ [--keep ЧИСЛО]

  create ФАЙЛ     создать базу данных без документов, со стандартными формами и списками
  sample КАТАЛОГ  создать в каталоге учебный пример: базу данных, бланки с фонами,
                  двести документов, шаблоны документов и обмена с таблицами
  check ФАЙЛ      проверить базу данных, ничего в ней не меняя: структуру, записи JSON
                  и ссылки; у файла docs.db — также фоны и таблицы рядом с ним
  backup ФАЙЛ КАТАЛОГ
                  создать в каталоге архив базы данных (.zlv) с датой в имени, если
                  база изменилась; с ней в это время можно работать
  --keep ЧИСЛО    хранить столько последних архивов, более старые удалять
  --help          показать эту справку

Существующие файлы никогда не перезаписываются. Код завершения: 0 — всё в порядке,
1 — проверка нашла ошибки, 2 — задание не выполнено.
</translation>
    </message>
    <message>
        <source>the file exists already: %1</source>
        <translation>файл уже существует: %1</translation>
    </message>
    <message>
        <source>cannot make the directory %1</source>
        <translation>не удалось создать каталог %1</translation>
    </message>
    <message>
        <source>cannot write the file %1</source>
        <translation>не удалось записать файл %1</translation>
    </message>
    <message>
        <source>no file or folder is named</source>
        <translation>не указан файл или каталог</translation>
    </message>
    <message>
        <source>no database was made: %1</source>
        <translation>база данных не создана: %1</translation>
    </message>
    <message>
        <source>Made the database %1</source>
        <translation>Создана база данных %1</translation>
    </message>
    <message>
        <source>Made the sample in %1</source>
        <translation>Учебный пример создан в каталоге %1</translation>
    </message>
    <message>
        <source>The last change of the database was interrupted; the next opening will undo it. What will remain was checked.</source>
        <translation>Последнее изменение базы прервано; его отменит следующее открытие. Проверено то, что останется.</translation>
    </message>
    <message numerus="yes">
        <source>Findings: %n</source>
        <translation>
            <numerusform>Найдено ошибок: %n</numerusform>
            <numerusform>Найдено ошибок: %n</numerusform>
            <numerusform>Найдено ошибок: %n</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing found: %1</source>
        <translation>Ошибок не найдено: %1</translation>
    </message>
    <message>
        <source>unknown command: %1</source>
        <translation>неизвестная команда: %1</translation>
    </message>
</context>
<context>
    <name>DocumentJob</name>
    <message>
        <source>there is no document %1</source>
        <translation>нет документа %1</translation>
    </message>
    <message>
        <source>there are no such documents</source>
        <translation>таких документов нет</translation>
    </message>
    <message>
        <source>can&apos;t make the folder %1</source>
        <translation>не удалось создать каталог %1</translation>
    </message>
    <message>
        <source>the folder takes no files: %1</source>
        <translation>в каталог нельзя записать файл: %1</translation>
    </message>
</context>
<context>
    <name>FindingWords</name>
    <message>
        <source>text higher than its frame</source>
        <translation>текст выше рамки</translation>
    </message>
    <message>
        <source>text wider than its frame</source>
        <translation>текст шире рамки</translation>
    </message>
    <message>
        <source>table rows cut off</source>
        <translation>строки таблицы обрезаны</translation>
    </message>
    <message>
        <source>table rows not printed</source>
        <translation>строки таблицы не печатаются</translation>
    </message>
    <message>
        <source>text does not fit its cell</source>
        <translation>текст не помещается в ячейку</translation>
    </message>
    <message>
        <source>table column not printed</source>
        <translation>столбец таблицы не печатается</translation>
    </message>
    <message>
        <source>table larger than its frame</source>
        <translation>таблица больше рамки</translation>
    </message>
    <message>
        <source>beyond the page</source>
        <translation>за краем листа</translation>
    </message>
    <message>
        <source>in the printer&apos;s margin</source>
        <translation>на полях принтера</translation>
    </message>
    <message>
        <source>tag not replaced</source>
        <translation>метка не заменена</translation>
    </message>
    <message>
        <source>no date</source>
        <translation>нет даты</translation>
    </message>
    <message>
        <source>tag without a value</source>
        <translation>метка без значения</translation>
    </message>
    <message>
        <source>last character not printed</source>
        <translation>последний знак не печатается</translation>
    </message>
    <message>
        <source>value read as markup</source>
        <translation>значение прочитано как разметка</translation>
    </message>
    <message>
        <source>text too large for any frame</source>
        <translation>текст слишком велик для рамки</translation>
    </message>
    <message>
        <source>font replaced</source>
        <translation>шрифт заменён</translation>
    </message>
    <message>
        <source>QR code too small</source>
        <translation>QR-код слишком мелкий</translation>
    </message>
    <message>
        <source>no QR code</source>
        <translation>QR-код не напечатается</translation>
    </message>
    <message>
        <source>text of QR code cut</source>
        <translation>текст QR-кода обрезан</translation>
    </message>
    <message>
        <source>no background</source>
        <translation>нет фона</translation>
    </message>
    <message>
        <source>page without a size</source>
        <translation>лист без размера</translation>
    </message>
    <message>
        <source>blank without frames</source>
        <translation>бланк без рамок</translation>
    </message>
    <message>
        <source>%1 mm</source>
        <translation>%1 мм</translation>
    </message>
    <message>
        <source>“%1”</source>
        <translation>«%1»</translation>
    </message>
    <message>
        <source>on the left</source>
        <translation>слева</translation>
    </message>
    <message>
        <source>at the top</source>
        <translation>сверху</translation>
    </message>
    <message>
        <source>on the right</source>
        <translation>справа</translation>
    </message>
    <message>
        <source>at the bottom</source>
        <translation>снизу</translation>
    </message>
    <message>
        <source>the text is too high: %2 %1 of it are cut off</source>
        <translation>текст не помещается по высоте: %1 обрезано %2</translation>
    </message>
    <message>
        <source>the text is too wide: %2 %1 of it are cut off</source>
        <translation>текст не помещается по ширине: %1 обрезано %2</translation>
    </message>
    <message>
        <source>the text is higher than its frame: %2 it goes %1 beyond it, and is printed</source>
        <translation>текст выше рамки: выходит за неё %2 на %1, но печатается</translation>
    </message>
    <message>
        <source>the text is wider than its frame: %2 it goes %1 beyond it, and is printed</source>
        <translation>текст шире рамки: выходит за неё %2 на %1, но печатается</translation>
    </message>
    <message>
        <source>row %1 of the table loses %2 at the bottom</source>
        <translation>строка таблицы %1 обрезана снизу на %2</translation>
    </message>
    <message>
        <source>rows of the table that do not fit into the frame: %1</source>
        <translation>не поместились в рамку строки таблицы: %1</translation>
    </message>
    <message>
        <source>the text %1 is %2 higher than its cell</source>
        <translation>текст %1 выше ячейки на %2</translation>
    </message>
    <message>
        <source>the text %1 is %2 wider than its cell</source>
        <translation>текст %1 шире ячейки на %2</translation>
    </message>
    <message>
        <source>its edge is cut off</source>
        <translation>край обрезан</translation>
    </message>
    <message>
        <source>%1 is printed</source>
        <translation>напечатается %1</translation>
    </message>
    <message>
        <source>row %1, column %2 of the table: %3, %4</source>
        <translation>строка таблицы %1, столбец %2: %3, %4</translation>
    </message>
    <message>
        <source>goes %1 beyond the edge of the page %2</source>
        <translation>выходит за край листа %2 на %1</translation>
    </message>
    <message>
        <source>goes %1 into the printer&apos;s margin %2</source>
        <translation>заходит на поле принтера %2 на %1</translation>
    </message>
    <message>
        <source>%1, %2 of the print are lost</source>
        <translation>%1, теряется %2 напечатанного</translation>
    </message>
    <message>
        <source>%1, with its empty part only</source>
        <translation>%1, но только пустой частью</translation>
    </message>
    <message>
        <source>rows of the table that no frame of the blank prints: %1</source>
        <translation>ни одна рамка бланка не печатает строки таблицы: %1</translation>
    </message>
    <message>
        <source>column %1 of the table does not fit into the frame</source>
        <translation>столбец %1 таблицы не поместился в рамку</translation>
    </message>
    <message>
        <source>the tag %1 prints as it stands</source>
        <translation>метка %1 напечатается как есть</translation>
    </message>
    <message>
        <source>the tag %1 has no date: %2 is printed</source>
        <translation>у метки %1 нет даты: напечатается %2</translation>
    </message>
    <message>
        <source>the tag %1 has no value: nothing is printed</source>
        <translation>у метки %1 нет значения: ничего не напечатается</translation>
    </message>
    <message>
        <source>the last character %1 is not printed</source>
        <translation>последний знак %1 не печатается</translation>
    </message>
    <message>
        <source>the value of the tag %1 does not print as it stands: %2</source>
        <translation>значение метки %1 напечатается не так, как записано: %2</translation>
    </message>
    <message>
        <source>the text is too long or has too much markup: it prints without markup, and as far as it fits a page</source>
        <translation>текст слишком длинный или в нём слишком много разметки: он напечатается без разметки и не дальше конца листа</translation>
    </message>
    <message>
        <source>there is no font %1, %2 takes its place</source>
        <translation>нет шрифта %1, вместо него %2</translation>
    </message>
    <message>
        <source>no QR code is printed: the text is empty</source>
        <translation>QR-код не напечатается: текст пуст</translation>
    </message>
    <message>
        <source>no QR code is printed: the text is too long</source>
        <translation>QR-код не напечатается: текст слишком длинный</translation>
    </message>
    <message>
        <source>the QR code holds the text only as far as its zero character</source>
        <translation>QR-код содержит только начало текста, до нулевого знака</translation>
    </message>
    <message>
        <source>the background can&apos;t be loaded: %1</source>
        <translation>фон не загружается: %1</translation>
    </message>
    <message>
        <source>the width or height of the page is 0: nothing is printed</source>
        <translation>ширина или высота листа 0: ничего не напечатается</translation>
    </message>
    <message>
        <source>there is no frame on the blank: no value is printed</source>
        <translation>на бланке нет ни одной рамки: значения не напечатаются</translation>
    </message>
    <message>
        <source>document %1</source>
        <translation>документ %1</translation>
    </message>
    <message>
        <source>form no. %1</source>
        <translation>бланк № %1</translation>
    </message>
    <message>
        <source>the table goes %1 beyond its frame %2, and is printed</source>
        <translation>таблица выходит за рамку %2 на %1, но печатается</translation>
    </message>
    <message>
        <source>a module of the QR code is only %1 mm, it takes at least %2 mm</source>
        <translation>клетка QR-кода всего %1 мм, нужно не меньше %2 мм</translation>
    </message>
    <message>
        <source>%1 (%2 mm)</source>
        <translation>%1 (%2 мм)</translation>
    </message>
    <message>
        <source>blank %1</source>
        <translation>бланк %1</translation>
    </message>
    <message>
        <source>frame %1 %2</source>
        <translation>рамка %1 %2</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>и ещё замечаний: %n</numerusform>
            <numerusform>и ещё замечаний: %n</numerusform>
            <numerusform>и ещё замечаний: %n</numerusform>
        </translation>
    </message>
    <message>
        <source>background elsewhere</source>
        <translation>фон не в папке программы</translation>
    </message>
    <message>
        <source>unknown paper format</source>
        <translation>неизвестный формат бумаги</translation>
    </message>
    <message>
        <source>page too large</source>
        <translation>лист слишком велик</translation>
    </message>
    <message>
        <source>the background lies outside the application directory: %1</source>
        <translation>фон лежит вне папки программы: %1</translation>
    </message>
    <message>
        <source>there is no paper format with the code %1: the page prints on whatever paper the printer has</source>
        <translation>нет формата бумаги с кодом %1: лист напечатается на бумаге, которая выбрана в принтере</translation>
    </message>
    <message>
        <source>the page of %1 mm is larger than any paper: no background is loaded</source>
        <translation>лист %1 мм больше любой бумаги: фон не загружается</translation>
    </message>
    <message>
        <source>a page can&apos;t have the size %1 mm: nothing is printed</source>
        <translation>размера листа %1 мм не бывает: ничего не напечатается</translation>
    </message>
</context>
<context>
    <name>OffsetWords</name>
    <message>
        <source>moves nothing</source>
        <translation>печать не сдвинется</translation>
    </message>
    <message>
        <source>moves the print %1 mm %2</source>
        <translation>сдвинет печать на %1 мм %2</translation>
    </message>
    <message>
        <source>nothing remains</source>
        <translation>остатка нет</translation>
    </message>
    <message>
        <source>%1 mm %2 remains</source>
        <translation>остаток %1 мм %2</translation>
    </message>
    <message>
        <source>%1: %2 mm: %3, %4</source>
        <translation>%1: %2 мм — %3, %4</translation>
    </message>
    <message>
        <source>right</source>
        <translation>вправо</translation>
    </message>
    <message>
        <source>left</source>
        <translation>влево</translation>
    </message>
    <message>
        <source>down</source>
        <translation>вниз</translation>
    </message>
    <message>
        <source>up</source>
        <translation>вверх</translation>
    </message>
</context>
<context>
    <name>PrintJob</name>
    <message numerus="yes">
        <source>interrupted; documents printed: %n</source>
        <translation>
            <numerusform>прервано; напечатано документов: %n</numerusform>
            <numerusform>прервано; напечатано документов: %n</numerusform>
            <numerusform>прервано; напечатано документов: %n</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PrintOptions</name>
    <message>
        <source>unknown option: %1</source>
        <translation>неизвестный ключ: %1</translation>
    </message>
    <message>
        <source>wrong options: %1</source>
        <translation>ошибка в ключах: %1</translation>
    </message>
    <message>
        <source>unexpected argument: %1</source>
        <translation>лишний аргумент: %1</translation>
    </message>
    <message>
        <source>given twice: --%1</source>
        <translation>дважды указан ключ --%1</translation>
    </message>
    <message>
        <source>no blank is named</source>
        <translation>не указан бланк</translation>
    </message>
    <message>
        <source>--offsets needs two numbers, in millimetres</source>
        <translation>ключу --offsets нужны два числа, в миллиметрах</translation>
    </message>
    <message>
        <source>--offsets needs two numbers, in millimetres: %1</source>
        <translation>ключу --offsets нужны два числа, в миллиметрах: %1</translation>
    </message>
    <message>
        <source>--offsets is given twice</source>
        <translation>ключ --offsets указан дважды</translation>
    </message>
    <message>
        <source>only one of --check, --proof, --calibration and --offsets is possible</source>
        <translation>возможен только один из ключей --check, --proof, --calibration и --offsets</translation>
    </message>
    <message>
        <source>out of place here: --%1</source>
        <translation>здесь не нужен ключ --%1</translation>
    </message>
    <message>
        <source>--id does not go with %1</source>
        <translation>ключ --id не сочетается с ключом %1</translation>
    </message>
    <message>
        <source>which documents? --id, a filter or --all is needed</source>
        <translation>какие документы? Нужен ключ --id, отбор или --all</translation>
    </message>
    <message>
        <source>neither an ID nor a range of IDs: %1</source>
        <translation>не номер и не промежуток номеров документов: %1</translation>
    </message>
    <message>
        <source>no date of the form yyyy-MM-dd: %1</source>
        <translation>дата не в виде ГГГГ-ММ-ДД: %1</translation>
    </message>
    <message>
        <source>no printer is named</source>
        <translation>не указан принтер</translation>
    </message>
    <message>
        <source>--output is needed</source>
        <translation>нужен ключ --output</translation>
    </message>
    <message>
        <source>--blank is needed</source>
        <translation>нужен ключ --blank</translation>
    </message>
    <message>
        <source>one of --output and --printer is needed</source>
        <translation>нужен один из ключей --output и --printer</translation>
    </message>
    <message>
        <source>no file or folder is named</source>
        <translation>не указан файл или каталог</translation>
    </message>
    <message>
        <source>this is no %1 file: %2</source>
        <translation>это не файл %1: %2</translation>
    </message>
    <message>
        <source>--name goes with a folder only</source>
        <translation>ключ --name нужен только с каталогом</translation>
    </message>
    <message>
        <source>the braces of the name pattern do not match: %1</source>
        <translation>в образце имён не сходятся фигурные скобки: %1</translation>
    </message>
    <message>
        <source>--%1 is no number from %2 to %3: %4</source>
        <translation>--%1 — не число от %2 до %3: %4</translation>
    </message>
    <message>
        <source>the margins are neither one nor four numbers of millimetres: %1</source>
        <translation>поля — не одно и не четыре числа в миллиметрах: %1</translation>
    </message>
    <message>
        <source>Usage:
  zelvora-print [OPTIONS] DOCUMENTS TARGET         print
  zelvora-print [OPTIONS] --check DOCUMENTS        look for faults before printing
  zelvora-print [OPTIONS] --proof DOCUMENTS TARGET draw with frames and findings
  zelvora-print [OPTIONS] --calibration --blank BLANK TARGET
                                                   print a sheet of scales
  zelvora-print [OPTIONS] --offsets X Y            work out the print offsets

Prints documents without a window, just as the application prints them.

Documents:
  --id LIST           IDs and ranges of IDs: 5 or 3,7,10-20
  --all               all documents
  --surname TEXT      part of the surname; filters go together
  --group TEXT        part of the class
  --type FORM         ID or name of the form
  --from yyyy-MM-dd   date of issue: this day or later
  --to yyyy-MM-dd     date of issue: this day or earlier
  --where CONDITION   an SQL condition on the columns of the table docs
  --blank BLANK       ID or name of the blank; by default the first one of the form

Target:
  --output PATH       a .pdf file (a page a document) or a folder (a file a document;
                      made if there is none)
  --name PATTERN      names of the files in a folder, with tags in braces:
                      {#LNAME}_{#BLANK_NO}.pdf; by default ID, surname and first name
  --printer NAME      a printer instead of a file

Printing:
  --background        print the blank&apos;s background too
  --copies NUMBER     copies of each document, 1 to 99
  --strict            do not print documents with findings; warnings about the
                      blank hold nothing back

Check (--check) and proof (--proof):
  --margins MARGINS   margins that the printer leaves blank, in mm: one number or
                      LEFT,TOP,RIGHT,BOTTOM; with --printer those of the printer
  --json              findings as JSON
  --output PATH       a .png file or a folder for the pictures
  --resolution NUMBER dots per inch of a picture, 36 to 1200; by default 150

Calibration:
  --calibration       a sheet of scales for the blank&apos;s paper
  --offsets X Y       from two numbers read off that sheet, in mm, work out the print
                      offsets to enter in the blank&apos;s format

Other:
  --dir DIR           application directory with docs.db; by default the program&apos;s own
  --org-data FILE     the organisation&apos;s data; by default the user&apos;s own
  --quiet             show no progress
  --help              show this help

Exit status: 0 if all was done and nothing found, 1 if some documents were not printed or
there are findings, 2 if the job could not be done.
</source>
        <translation>Использование:
  zelvora-print [КЛЮЧИ] ДОКУМЕНТЫ КУДА             напечатать
  zelvora-print [КЛЮЧИ] --check ДОКУМЕНТЫ          проверить до печати
  zelvora-print [КЛЮЧИ] --proof ДОКУМЕНТЫ КУДА     нарисовать с рамками и замечаниями
  zelvora-print [КЛЮЧИ] --calibration --blank БЛАНК КУДА
                                                   напечатать лист со шкалами
  zelvora-print [КЛЮЧИ] --offsets X Y              вычислить смещение печати

Печатает документы без окна, так же, как их печатает приложение.

Документы:
  --id СПИСОК         номера и промежутки номеров: 5 или 3,7,10-20
  --all               все документы
  --surname ТЕКСТ     часть фамилии; отборы сочетаются
  --group ТЕКСТ       часть названия класса
  --type ФОРМА        номер или название формы
  --from ГГГГ-ММ-ДД   дата выдачи: с этого дня включительно
  --to ГГГГ-ММ-ДД     дата выдачи: по этот день включительно
  --where УСЛОВИЕ     условие SQL на столбцы таблицы docs
  --blank БЛАНК       номер или название бланка; без ключа — первый бланк формы

Куда:
  --output ПУТЬ       файл .pdf (по странице на документ) или каталог (по файлу на
                      документ; создаётся, если его нет)
  --name ОБРАЗЕЦ      имена файлов в каталоге, с метками в фигурных скобках:
                      {#LNAME}_{#BLANK_NO}.pdf; без ключа — номер, фамилия и имя
  --printer ИМЯ       принтер вместо файла

Печать:
  --background        печатать и фон бланка
  --copies ЧИСЛО      экземпляров каждого документа, от 1 до 99
  --strict            не печатать документы с замечаниями; предупреждения
                      о самом бланке печати не мешают

Проверка (--check) и пробный рисунок (--proof):
  --margins ПОЛЯ      поля, на которых принтер не печатает, в мм: одно число или
                      ЛЕВОЕ,ВЕРХНЕЕ,ПРАВОЕ,НИЖНЕЕ; с ключом --printer — поля принтера
  --json              замечания в виде JSON
  --output ПУТЬ       файл .png или каталог для рисунков
  --resolution ЧИСЛО  точек на дюйм рисунка, от 36 до 1200; без ключа 150

Настройка печати на место:
  --calibration       лист со шкалами для бумаги бланка
  --offsets X Y       по двум числам, снятым с листа, в мм, вычислить «Смещение
                      печати X» и «Смещение печати Y» для формата бланка

Прочее:
  --dir КАТАЛОГ       каталог приложения с docs.db; без ключа — каталог программы
  --org-data ФАЙЛ     данные организации; без ключа — данные пользователя
  --quiet             не показывать ход работы
  --help              показать эту справку

Код завершения: 0 — сделано всё; 1 — часть документов не напечатана либо проверка или
пробный рисунок дали замечания; 2 — задание не выполнено.
</translation>
    </message>
    <message>
        <source>no value is given to --%1</source>
        <translation>нет значения у ключа --%1</translation>
    </message>
</context>
<context>
    <name>PrintTool</name>
    <message>
        <source>can&apos;t read the organisation&apos;s data %1</source>
        <translation>не удалось прочитать данные организации %1</translation>
    </message>
    <message>
        <source>there is no file %1</source>
        <translation>нет файла %1</translation>
    </message>
    <message>
        <source>Help: zelvora-print --help</source>
        <translation>Справка: zelvora-print --help</translation>
    </message>
    <message>
        <source>can&apos;t open the database %1</source>
        <translation>не удалось открыть базу данных %1</translation>
    </message>
    <message>
        <source>the database has computations in the place of the table %1</source>
        <translation>в базе данных вычисления на месте таблицы %1</translation>
    </message>
    <message>
        <source>the table %1 has no column %2</source>
        <translation>в таблице %1 нет столбца %2</translation>
    </message>
</context>
<context>
    <name>PrintToolJob</name>
    <message>
        <source>can&apos;t write the file %1</source>
        <translation>не удалось записать файл %1</translation>
    </message>
    <message>
        <source>there is no printer %1</source>
        <translation>нет принтера %1</translation>
    </message>
    <message>
        <source>there is no printer %1, there are: %2</source>
        <translation>нет принтера %1, есть: %2</translation>
    </message>
</context>
<context>
    <name>PrintWords</name>
    <message>
        <source>the condition is not understood: %1</source>
        <translation>условие не понято: %1</translation>
    </message>
    <message>
        <source>can&apos;t read the documents: %1</source>
        <translation>не удалось прочитать документы: %1</translation>
    </message>
    <message>
        <source>it is no one expression</source>
        <translation>это не одно выражение</translation>
    </message>
    <message>
        <source>there is no form %1</source>
        <translation>нет формы %1</translation>
    </message>
    <message>
        <source>document %1: no blank prints it</source>
        <translation>документ %1: для него нет бланков</translation>
    </message>
    <message>
        <source>document %1: it has no blank %2</source>
        <translation>документ %1: нет бланка %2</translation>
    </message>
    <message>
        <source>document %1: it or its blank can&apos;t be read</source>
        <translation>документ %1: не удалось прочитать его или бланк</translation>
    </message>
    <message>
        <source>the printer refused document %1</source>
        <translation>принтер не принял документ %1</translation>
    </message>
    <message>
        <source>there are findings, not printed is document %1</source>
        <translation>есть замечания, не печатается документ %1</translation>
    </message>
    <message>
        <source>Documents checked: %1, findings: %2</source>
        <translation>Проверено документов: %1, замечаний: %2</translation>
    </message>
    <message>
        <source>can&apos;t write the file %1</source>
        <translation>не удалось записать файл %1</translation>
    </message>
    <message>
        <source>the printer has gone, perhaps not printed is document %1</source>
        <translation>принтер пропал, возможно, не напечатан документ %1</translation>
    </message>
</context>
<context>
    <name>ProgressLine</name>
    <message>
        <source>%1 of %2</source>
        <translation>%1 из %2</translation>
    </message>
</context>
<context>
    <name>ProofJob</name>
    <message>
        <source>interrupted</source>
        <translation>прервано</translation>
    </message>
    <message>
        <source>there are several documents: the pictures need a folder</source>
        <translation>документов несколько: рисункам нужен каталог</translation>
    </message>
    <message>
        <source>the page has no size, there is no picture %1</source>
        <translation>лист без размера, нет рисунка %1</translation>
    </message>
    <message>
        <source>no memory for the picture %1</source>
        <translation>не хватает памяти для рисунка %1</translation>
    </message>
</context>
<context>
    <name>SettledDatabase</name>
    <message>
        <source>the database cannot be copied with its journal: %1</source>
        <translation>не удалось скопировать базу данных с её журналом: %1</translation>
    </message>
</context>
<context>
    <name>UpdateManifest</name>
    <message>
        <source>line %1, column %2</source>
        <translation>строка %1, столбец %2</translation>
    </message>
    <message>
        <source>top level</source>
        <translation>начало файла</translation>
    </message>
    <message>
        <source>an object is expected</source>
        <translation>ожидается объект</translation>
    </message>
    <message>
        <source>an array is expected</source>
        <translation>ожидается массив</translation>
    </message>
    <message>
        <source>&quot;sqlQuery&quot; or &quot;cppFunction&quot; is expected</source>
        <translation>ожидается &quot;sqlQuery&quot; или &quot;cppFunction&quot;</translation>
    </message>
    <message>
        <source>unknown key</source>
        <translation>неизвестный ключ</translation>
    </message>
    <message>
        <source>a version of four numbers is expected, for example &quot;1.2.0.0&quot;</source>
        <translation>ожидается версия из четырёх чисел, например &quot;1.2.0.0&quot;</translation>
    </message>
    <message>
        <source>the version is above update_version</source>
        <translation>версия выше, чем update_version</translation>
    </message>
    <message>
        <source>true or false is expected</source>
        <translation>ожидается true или false</translation>
    </message>
    <message>
        <source>&quot;crutchFrdoA&quot; is expected</source>
        <translation>ожидается &quot;crutchFrdoA&quot;</translation>
    </message>
    <message>
        <source>%1 is not possible: an update is one transaction</source>
        <translation>%1 нельзя: обновление выполняется одной транзакцией</translation>
    </message>
    <message>
        <source>a text or an array of lines is expected</source>
        <translation>ожидается текст или массив строк</translation>
    </message>
    <message>
        <source>the text is empty</source>
        <translation>текст пуст</translation>
    </message>
    <message>
        <source>the key is given twice: %1</source>
        <translation>ключ указан дважды: %1</translation>
    </message>
</context>
<context>
    <name>UpdateTool</name>
    <message>
        <source>Usage: zelvora-update make MANIFEST PACKAGE
       zelvora-update show PACKAGE

  make    make an update package for the database (dbUpdate.bin) from a JSON manifest
  show    print a package as a manifest
  --help  show this help

A package that stands beside the application as dbUpdate.bin is applied at its next
start. Exit status: 0 if all is well, 2 if the job could not be done.
</source>
        <translation>Использование: zelvora-update make ОПИСАНИЕ ПАКЕТ
               zelvora-update show ПАКЕТ

  make    создать пакет обновления базы данных (dbUpdate.bin) по описанию в JSON
  show    напечатать пакет в виде описания
  --help  показать эту справку

Пакет, положенный рядом с программой под именем dbUpdate.bin, применяется при её
следующем запуске. Код завершения: 0 — всё в порядке, 2 — задание не выполнено.
</translation>
    </message>
    <message>
        <source>this is a database, it is not replaced</source>
        <translation>это база данных, она не заменяется</translation>
    </message>
    <message>
        <source>this is no regular file, it is not replaced</source>
        <translation>это не обычный файл, он не заменяется</translation>
    </message>
    <message>
        <source>this is no file, or too large</source>
        <translation>это не файл, или он слишком велик</translation>
    </message>
    <message>
        <source>this is the manifest itself, it is not replaced</source>
        <translation>это само описание, оно не заменяется</translation>
    </message>
    <message>
        <source>Made the package %1, parts: %2</source>
        <translation>Создан пакет %1, частей: %2</translation>
    </message>
    <message>
        <source>the package is cut off behind part %1</source>
        <translation>пакет обрывается после части %1</translation>
    </message>
    <message>
        <source>this is no update package</source>
        <translation>это не пакет обновления</translation>
    </message>
</context>
<context>
    <name>UserLanguage</name>
    <message>
        <source>can&apos;t write to the standard output</source>
        <translation>не удалось записать в стандартный вывод</translation>
    </message>
</context>
</TS>
